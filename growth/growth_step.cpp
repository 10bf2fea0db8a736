#include "growth/growth_step.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>

#include "growth/array.h"
#include "growth/sources.h"
#include "growth/state.h"
#include "surface/surface.h"

// Steps after which a walker that has not stuck is abandoned for a new one.
constexpr int kWalkerLife = 10000;
constexpr double kPercent = 0.01;
// Larger than any squared distance in an aggregate.
constexpr double kFarAway = 1e32;

// Steps of the growth step, in the order in which they are taken.
static void LaunchWalker();
static void CountStep();
static void MoveAtRandom();
static void Drift();
static void Rotate();
static int FindPartner();
static bool MeetsBranch(int partner);
static bool CutsSurface(int partner);
static bool PokesThroughGap();
static bool Stick(int partner);
static void AddFlow(int partner);
static void UpdateExtent();

static double LaunchRadius();
static void Explain(const char *rejection);

void IterateSystem()
{
    if (growthstate.stepcount % kWalkerLife == 0)
        LaunchWalker();

    const Vector undo = growthstate.pos;
    CountStep();
    MoveAtRandom();
    if (Modulus(growthstate.pos) > LaunchRadius()) {
        growthstate.pos = undo;
        return;
    }
    Drift();
    Rotate();

    const int partner = FindPartner();
    const double r = drand48();
    if (partner < 0 || r > growthstate.stickiness * kPercent)
        return;

    if (MeetsBranch(partner) || CutsSurface(partner) || PokesThroughGap() || !Stick(partner)) {
        growthstate.pos = undo;
        return;
    }
    AddFlow(partner);
    UpdateExtent();
    growthstate.stepcount = 0;
}

static void LaunchWalker()
{
    GetNewParticle(&growthstate.pos, growthstate.sourcetype, LaunchRadius());
    seeds[nseeds % kSeedRing] = growthstate.pos;
    nseeds++;
}

// The count starts over, in phase with the launches, before it overflows.
static void CountStep()
{
    if (growthstate.stepcount == INT_MAX)
        growthstate.stepcount %= kWalkerLife;
    growthstate.stepcount++;
}

static void MoveAtRandom()
{
    Vector step;
    step.x = drand48() - 0.5;
    step.y = drand48() - 0.5;
    step.z = drand48() - 0.5;
    Normalise(&step);
    growthstate.pos = growthstate.pos + growthstate.branchlength * step;
}

// Moves the walker away from a root, or from a point mixed from the roots' coordinates (the sign is kept).
static void Drift()
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
        target.x = cells[rand() % nplaced].p.x;
        target.y = cells[rand() % nplaced].p.y;
        target.z = cells[rand() % nplaced].p.z;
    }
    const double b = growthstate.branchlength * growthstate.bias * kPercent;
    Vector direction = target - growthstate.pos;
    Normalise(&direction);
    growthstate.pos = growthstate.pos - b * direction;
}

static void Rotate()
{
    if (growthstate.rotation != 0)
        growthstate.pos =
            ArbitraryRotate(growthstate.pos, growthstate.rotation * kDegreesToRadians, Vector{0, 0, 1});
}

// The newest eligible particle within a branch length, or -1. The skip tests compare signed differences with
// a squared distance (kept): below a branch length of 1 they can pass over a particle that is near.
static int FindPartner()
{
    const double reach2 = growthstate.branchlength * growthstate.branchlength;
    const int classes = growthstate.association ? growthstate.nroots : 0;
    double dmin = kFarAway;
    int partner = -1;
    for (int i = ncells - 1; i >= 0; i--) {
        if (classes > 0 && i % classes != ncells % classes)
            continue;
        const double dx = cells[i].p.x - growthstate.pos.x;
        if (dx > dmin)
            continue;
        const double dy = cells[i].p.y - growthstate.pos.y;
        if (dy > dmin)
            continue;
        const double dz = cells[i].p.z - growthstate.pos.z;
        if (dz > dmin)
            continue;
        const double d2 = dx * dx + dy * dy + dz * dz;
        if (d2 < dmin) {
            dmin = d2;
            partner = i;
        }
        if (dmin < reach2)
            return partner;
    }
    return -1;
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
    for (int i = 0; i < nstltri; i++) {
        Vector hit;
        if (LinePlaneIntersect(i, &hit, growthstate.pos, cells[partner].p)) {
            Explain("*** Cuts constraint surface\n");
            return true;
        }
    }
    return false;
}

// Whether the walker is within a branch length of an edge of a face and on the outer side of that face: it
// may have come through the gap between two faces.
static bool PokesThroughGap()
{
    for (int i = 0; i < nstltri; i++) {
        const Triangle &t = stltri[i];
        for (int edge = 0; edge < 3; edge++) {
            Vector closest;
            double mu;
            const double distance =
                PointLine3D(growthstate.pos, t.p[edge], t.p[(edge + 1) % 3], &closest, &mu);
            if (!(mu >= 0 && mu <= 1 && distance < growthstate.branchlength))
                continue;
            if (DotProduct(growthstate.pos - t.midpoint, t.n) > 0) {
                Explain("*** Gap poke through\n");
                return true;
            }
            break; // the first near edge decides for its face
        }
    }
    return false;
}

// Makes the walker a particle. Returns false, growth stopped, when there is no memory for it.
static bool Stick(int partner)
{
    if (AppendToArray(&cells, &ncells, Particle{growthstate.pos, 0, partner, 0}))
        return true;
    if (growthstate.running)
        fprintf(stderr, "Out of memory: growth stopped at %d particles\n", ncells);
    growthstate.running = 0;
    return false;
}

// Adds 1/n to the flow along the path from the partner to its root. The walk that counts n stops at index 0
// and the walk that adds passes through it (kept): paths that end in root 0 get a slightly larger share.
static void AddFlow(int partner)
{
    int n = 1;
    int i = partner;
    do {
        n++;
        i = cells[i].parent;
    } while (i > 0);
    for (i = partner; i >= 0; i = cells[i].parent)
        cells[i].weight += 1.0 / n;
}

static void UpdateExtent()
{
    for (int i = 0; i < ncells; i++) {
        growthstate.maxweight = std::max(growthstate.maxweight, cells[i].weight);
        growthstate.radius = std::max(growthstate.radius, Modulus(cells[i].p));
    }
}

static double LaunchRadius()
{
    return 2 * growthstate.branchlength + growthstate.radius;
}

static void Explain(const char *rejection)
{
    if (options.debug)
        fputs(rejection, stderr);
}
