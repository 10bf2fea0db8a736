#include "growth/growth_step.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <vector>

#include "growth/array.h"
#include "growth/flows.h"
#include "growth/generators.h"
#include "growth/neighbour_search.h"
#include "growth/sources.h"
#include "growth/state.h"
#include "surface/surface.h"
#include "surface/surface_index.h"

constexpr double kPercent = 0.01;

namespace
{
// What maxweight and radius were when they were last known to be the largest of the first `count` particles.
struct Extent {
    int count;
    double maxweight, radius;
};
} // namespace
static Extent extent = {-1, 0, 0};

static unsigned aggregatenumber = 0;

// Steps of the growth step, in the order in which they are taken.
static void LaunchWalker();
static int WalkFreely(int most);
static bool MoveWalker(Vector *pos);
static void MoveAtRandom(Vector *pos);
static bool IsOutside(Vector pos);
static void DriftBy(double length, Vector *pos);
static void Rotate(Vector *pos);
static void MeetAggregate(Vector undo);
static bool MeetsBranch(int partner);
static bool CutsSurface(int partner);
static bool PokesThroughGap();
static bool IsRefused(Vector end, double reach, FaceTest test, const char *rejection);
static bool IsNearEdge(const Triangle &t);
static bool Stick(int partner);
static void UpdateExtent(double largestflow);

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

// Takes at most so many steps within the free ball that the last search found, and the one that leaves it. Returns how many.
static int WalkFreely(int most)
{
    if (WalkersLeave())
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
            DrawUniform(); // the stickiness, which nothing is there to ask for
    }
    if (taken == 0)
        return 0;
    CountSteps(taken);
    growthstate.pos = pos;
    if (left)
        MeetAggregate(undo);
    return taken;
}

// Moves a walker by a step. Returns false where that would leave the launch sphere: it stays.
[[gnu::always_inline]] static inline bool MoveWalker(Vector *pos)
{
    const Vector undo = *pos;
    MoveAtRandom(pos);
    if (IsOutside(*pos) && !WalkersLeave()) {
        *pos = undo;
        return false;
    }
    DriftBy(DriftLength(), pos);
    if (growthstate.rotation != 0)
        Rotate(pos);
    return true;
}

// The walker that has come to a new place sticks there, or goes on, or is refused and goes back.
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
    UpdateExtent(BringFlow());
    growthstate.stepcount = 0;
}

void ForgetAggregate()
{
    DropNeighbourIndex();
    extent.count = -1;
    ForgetPaths();
    aggregatenumber++;
}

unsigned AggregateNumber()
{
    return aggregatenumber;
}

bool IsLaunchDue()
{
    if (WalkersLeave())
        return growthstate.stepcount == 0 ||
               Modulus(growthstate.pos) > growthstate.killingscale * LaunchRadius();
    return growthstate.stepcount % kWalkerLife == 0;
}

double AggregateReach()
{
    return 2 * growthstate.branchlength + growthstate.radius;
}

double LaunchRadius()
{
    return growthstate.launchscale * AggregateReach();
}

bool WalkersLeave()
{
    return growthstate.killingscale > 1;
}

// The count of launches starts over, in phase with the ring and with the ring full, before it overflows.
static void LaunchWalker()
{
    GetNewParticle(&growthstate.pos, growthstate.sourcetype, LaunchRadius());
    seeds[nseeds % kSeedRing] = growthstate.pos;
    if (nseeds == INT_MAX)
        nseeds = kSeedRing + nseeds % kSeedRing;
    nseeds++;
}

// The count starts over, in phase with the launches, before it overflows.
void CountSteps(int steps)
{
    if (growthstate.stepcount > INT_MAX - steps)
        growthstate.stepcount %= kWalkerLife;
    growthstate.stepcount += steps;
    growthstate.steptotal += steps;
}

[[gnu::always_inline]] static inline void MoveAtRandom(Vector *pos)
{
    Vector step;
    step.x = DrawUniform() - 0.5;
    step.y = DrawUniform() - 0.5;
    step.z = DrawUniform() - 0.5;
    Normalise(&step);
    *pos = *pos + growthstate.branchlength * step;
}

// Of the launch sphere. Well within it, the square of the distance tells.
static bool IsOutside(Vector pos)
{
    const double limit = LaunchRadius();
    const double squared = DotProduct(pos, pos);
    constexpr double kRounding = 1e-9;
    return !(squared < (1 - kRounding) * limit * limit && limit > 0) && std::sqrt(squared) > limit;
}

double DriftLength()
{
    return growthstate.branchlength * growthstate.bias * kPercent;
}

void Drift(double steps)
{
    DriftBy(steps * DriftLength(), &growthstate.pos);
}

// Moves the walker away from a root, or from a point mixed from the roots' coordinates (the sign is kept).
[[gnu::always_inline]] static inline void DriftBy(double length, Vector *pos)
{
    const int nplaced = std::min(growthstate.nroots, ncells);
    if (!(growthstate.bias > 0) || nplaced < 1)
        return;

    Vector target;
    if (growthstate.association) {
        const int root = ncells % growthstate.nroots;
        if (root >= nplaced)
            return;
        target = cells[root].p;
    } else {
        const auto draw = [nplaced] {
            const int drawn = DrawInteger();
            return nplaced == 1 ? 0 : drawn % nplaced;
        };
        target.x = cells[draw()].p.x;
        target.y = cells[draw()].p.y;
        target.z = cells[draw()].p.z;
    }
    Vector direction = target - *pos;
    Normalise(&direction);
    *pos = *pos - length * direction;
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

// Whether the line of the new branch comes too near to the line of another.
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

// Whether a face within reach of the segment from the walker to `end` refuses it.
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

// Raises maxweight and radius to the largest of any particle. Where they already were that before this stick,
// only the path from the new particle to its root can raise them.
static void UpdateExtent(double largestflow)
{
    const bool waslargest = extent.count == ncells - 1 && extent.maxweight == growthstate.maxweight &&
                            extent.radius == growthstate.radius;
    if (waslargest) {
        growthstate.maxweight = std::max(growthstate.maxweight, largestflow);
        growthstate.radius = std::max(growthstate.radius, Modulus(cells[ncells - 1].p));
    } else {
        SettleFlows();
        for (int i = 0; i < ncells; i++) {
            growthstate.maxweight = std::max(growthstate.maxweight, cells[i].weight);
            growthstate.radius = std::max(growthstate.radius, Modulus(cells[i].p));
        }
    }
    extent = {ncells, growthstate.maxweight, growthstate.radius};
}

void RaiseLargestFlow(double flow)
{
    const bool wasknown = extent.maxweight == growthstate.maxweight;
    growthstate.maxweight = std::max(growthstate.maxweight, flow);
    if (wasknown)
        extent.maxweight = growthstate.maxweight;
}

// For lack of memory. The step is refused, with one message; the user may try again.
static void StopGrowth()
{
    if (growthstate.running)
        fprintf(stderr, "Out of memory: growth stopped at %d particles\n", ncells);
    growthstate.running = 0;
}

static void Explain(const char *rejection)
{
    if (options.debug)
        fputs(rejection, stderr);
}
