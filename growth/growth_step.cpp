#include "growth/growth_step.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <vector>

#include "base/array.h"
#include "growth/deferred_flows.h"
#include "growth/generators.h"
#include "growth/sources.h"
#include "growth/state.h"
#include "growth/walker.h"
#include "search/neighbour_search.h"
#include "surface/surface.h"
#include "surface/surface_index.h"

namespace
{
// What growthstate.radius was when it was last known to be the largest of the first `count` particles.
struct KnownRadius {
    int count;
    double radius;
};
} // namespace
static KnownRadius knownradius = {-1, 0};

static unsigned aggregatenumber = 0;

// The parts of the growth step, in the order of their execution.
static void LaunchWalker();
static int WalkFreely(int most);
static bool MoveWalker(Vector *pos);
static void MoveAtRandom(Vector *pos);
static bool IsOutside(Vector pos);
static void Rotate(Vector *pos);
static void MeetAggregate(Vector undo);
static bool MeetsBranch(int partner);
static bool CutsSurface(int partner);
static bool PokesThroughGap();
static bool IsRefused(Vector end, double reach, FaceTest test, const char *rejection);
static bool IsNearEdge(const Triangle &t);
static bool Stick(int partner);
static void UpdateRadius();

static void StopGrowth();
static void Explain(const char *rejection);

void IterateSystem()
{
    if (IsLaunchDue())
        LaunchWalker();
    const Vector undo = growthstate.pos;
    CountSteps(1);
    if (MoveWalker(&growthstate.pos))
        MeetAggregate(undo);
}

int IterateUntilStick(int most)
{
    const int count = ncells;
    int taken = 0;
    while (taken < most && ncells == count) {
        taken += WalkFreely(most - taken);
        if (taken < most && ncells == count) {
            IterateSystem();
            taken++;
        }
    }
    return taken;
}

// Takes at most `most` steps from within the free ball that the last search found, up to and including the step that
// leaves it. Returns the number of steps.
static int WalkFreely(int most)
{
    if (WalkersMayLeave())
        return 0;
    const int age = growthstate.stepcount % kWalkerLife;
    const int limit = age == 0 ? 0 : std::min({most, kWalkerLife - age, INT_MAX - growthstate.stepcount});
    const FreeBall ball = CurrentFreeBall();
    Vector pos = growthstate.pos;
    Vector undo = pos;
    bool left = !ball.Contains(pos);
    int taken = 0;
    while (taken < limit && !left) {
        undo = pos;
        taken++;
        if (!MoveWalker(&pos))
            continue;
        left = !ball.Contains(pos);
        if (!left)
            DrawUniform(); // stickiness draw: always made, unused without a partner
    }
    if (taken == 0)
        return 0;
    CountSteps(taken);
    growthstate.pos = pos;
    if (left)
        MeetAggregate(undo);
    return taken;
}

// Moves a walker by a step. Returns false, with the walker unmoved, if the step would leave the launch sphere.
static inline bool MoveWalker(Vector *pos)
{
    const Vector undo = *pos;
    MoveAtRandom(pos);
    if (IsOutside(*pos) && !WalkersMayLeave()) {
        *pos = undo;
        return false;
    }
    DriftBy(DriftLength(), pos);
    if (growthstate.rotation != 0)
        Rotate(pos);
    return true;
}

// After a move, the walker sticks, or continues, or is refused and put back to `undo`.
static void MeetAggregate(Vector undo)
{
    const int partner = FindPartner();
    // Drawn with or without a partner: the sequence of draws does not depend on what a walker meets.
    const double r = DrawUniform();
    if (partner < 0 || r > growthstate.stickiness * kPercent)
        return;

    if (MeetsBranch(partner) || CutsSurface(partner) || PokesThroughGap() || !Stick(partner)) {
        growthstate.pos = undo;
        return;
    }
    AddFlowOfNewest();
    UpdateRadius();
    growthstate.stepcount = 0;
}

void ForgetAggregate()
{
    DropNeighbourIndex();
    knownradius.count = -1;
    ForgetFlows();
    aggregatenumber++;
}

unsigned AggregateNumber()
{
    return aggregatenumber;
}

// Before the launch count overflows, it is reduced to one with the same place in the ring, and the ring full.
static void LaunchWalker()
{
    GetNewParticle(&growthstate.pos, growthstate.sourcetype, LaunchRadius());
    seeds[nseeds % kSeedRing] = growthstate.pos;
    if (nseeds == INT_MAX)
        nseeds = kSeedRing + nseeds % kSeedRing;
    nseeds++;
}

static inline void MoveAtRandom(Vector *pos)
{
    Vector step;
    step.x = DrawUniform() - 0.5;
    step.y = DrawUniform() - 0.5;
    step.z = DrawUniform() - 0.5;
    Normalise(&step);
    *pos = *pos + growthstate.branchlength * step;
}

// Whether pos is outside of the launch sphere. Compared by squares unless within rounding of the limit.
static bool IsOutside(Vector pos)
{
    const double limit = LaunchRadius();
    const double squared = DotProduct(pos, pos);
    constexpr double kRounding = 1e-9;
    return !(squared < (1 - kRounding) * limit * limit && limit > 0) && std::sqrt(squared) > limit;
}

static void Rotate(Vector *pos)
{
    static double known = 0;
    static SineCosine theta = {0, 1};
    if (growthstate.rotation != known) {
        known = growthstate.rotation;
        theta = FindSineCosine(known * kDegreesToRadians);
    }
    *pos = ArbitraryRotate(*pos, theta, Vector{0, 0, 1});
}

// Whether the line of the new branch comes too near to the line of another branch.
static bool MeetsBranch(int partner)
{
    if (!(growthstate.intersectrange > 0))
        return false;
    const double tolerance = growthstate.intersectrange * kPercent * growthstate.branchlength;
    for (int i = 0; i < ncells; i++) {
        if (i == partner || cells[i].parent < 0)
            continue;
        Vector pa, pb;
        double mua, mub;
        if (LineLineIntersect(growthstate.pos, cells[partner].p, cells[i].p, cells[cells[i].parent].p, &pa,
                              &pb, &mua, &mub) &&
            VectorLength(pa, pb) < tolerance) {
            Explain("*** Self intersection\n");
            return true;
        }
    }
    return false;
}

// Whether the new branch crosses a face of the constraint surface.
static bool CutsSurface(int partner)
{
    const auto crosses = [](int face, Vector p1, Vector p2) {
        Vector hit;
        return LinePlaneIntersect(face, &hit, p1, p2) != 0;
    };
    return IsRefused(cells[partner].p, 0, crosses, "*** Cuts constraint surface\n");
}

// Whether the walker is within a branch length of an edge of a face and on the outer side of that face: it
// may have come through the gap between two faces.
static bool PokesThroughGap()
{
    const auto isbeyond = [](int face, Vector pos, Vector) {
        const Triangle &t = stltri[face];
        return DotProduct(pos - t.midpoint, t.n) > 0 && IsNearEdge(t);
    };
    return IsRefused(growthstate.pos, growthstate.branchlength, isbeyond, "*** Gap poke through\n");
}

// Whether the test holds for a face within `reach` of the segment from the walker to `end`, which refuses the walker;
// so does lack of memory.
static bool IsRefused(Vector end, double reach, FaceTest test, const char *rejection)
{
    const FaceSearch found = FindFaceNear(growthstate.pos, end, reach, test);
    if (found == FaceSearch::kFound)
        Explain(rejection);
    if (found == FaceSearch::kOutOfMemory)
        StopGrowth();
    return found != FaceSearch::kNone;
}

static bool IsNearEdge(const Triangle &t)
{
    for (int edge = 0; edge < 3; edge++) {
        Vector closest;
        double mu;
        const double distance = PointLine3D(growthstate.pos, t.p[edge], t.p[(edge + 1) % 3], &closest, &mu);
        if (mu >= 0 && mu <= 1 && distance < growthstate.branchlength)
            return true;
    }
    return false;
}

// Makes the walker a particle. Returns false, growth stopped, when there is no memory for it.
static bool Stick(int partner)
{
    if (!AppendToArray(&cells, &ncells, Particle{growthstate.pos, 0, partner, 0})) {
        StopGrowth();
        return false;
    }
    AddToNeighbourIndex();
    return true;
}

// Raises the radius to the largest distance of any particle. Where it already was that before this stick, only the
// new particle can raise it.
static void UpdateRadius()
{
    const bool waslargest = knownradius.count == ncells - 1 && knownradius.radius == growthstate.radius;
    for (int i = waslargest ? ncells - 1 : 0; i < ncells; i++)
        growthstate.radius = std::max(growthstate.radius, Modulus(cells[i].p));
    knownradius = {ncells, growthstate.radius};
}

// Stops growth for lack of memory; the user may try again.
static void StopGrowth()
{
    growthstate.running = 0;
}

static void Explain(const char *rejection)
{
    if (options.debug)
        fputs(rejection, stderr);
}
