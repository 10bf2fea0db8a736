#include "growth/refusal.h"

#include <cstdio>

#include "growth/state.h"
#include "growth/walker.h"
#include "surface/surface.h"
#include "surface/surface_index.h"

static bool MeetsBranch(Vector pos, int partner);
static bool CutsSurface(Vector pos, int partner);
static bool PokesThroughGap(Vector walker);
static bool HoldsForFace(Vector pos, Vector end, double reach, FaceTest test, const char *rejection);
static bool IsNearEdge(Vector pos, const Triangle &t);
static void Explain(const char *rejection);

bool IsRefused(Vector pos, int partner)
{
    return MeetsBranch(pos, partner) || CutsSurface(pos, partner) || PokesThroughGap(pos);
}

// Whether the line of the new branch comes too near to the line of another branch.
static bool MeetsBranch(Vector pos, int partner)
{
    if (!(growthstate.intersectrange > 0))
        return false;
    const double tolerance = growthstate.intersectrange * kPercent * growthstate.branchlength;
    for (int i = 0; i < ncells; i++) {
        if (i == partner || cells[i].parent < 0)
            continue;
        Vector pa, pb;
        double mua, mub;
        if (LineLineIntersect(pos, cells[partner].p, cells[i].p, cells[cells[i].parent].p, &pa, &pb, &mua,
                              &mub) &&
            VectorLength(pa, pb) < tolerance) {
            Explain("*** Self intersection\n");
            return true;
        }
    }
    return false;
}

// Whether the new branch crosses a face of the constraint surface.
static bool CutsSurface(Vector pos, int partner)
{
    const auto crosses = [](int face, Vector p1, Vector p2) {
        Vector hit;
        return LinePlaneIntersect(face, &hit, p1, p2) != 0;
    };
    return HoldsForFace(pos, cells[partner].p, 0, crosses, "*** Cuts constraint surface\n");
}

// Whether the walker is within a branch length of an edge of a face and on the outer side of that face: it
// may have come through the gap between two faces.
static bool PokesThroughGap(Vector walker)
{
    const auto isbeyond = [](int face, Vector pos, Vector) {
        const Triangle &t = stltri[face];
        return DotProduct(pos - t.midpoint, t.n) > 0 && IsNearEdge(pos, t);
    };
    return HoldsForFace(walker, walker, growthstate.branchlength, isbeyond, "*** Gap poke through\n");
}

// Whether the test holds for a face within `reach` of the segment from `pos` to `end`. Lack of memory counts as if
// it held, and stops growth.
static bool HoldsForFace(Vector pos, Vector end, double reach, FaceTest test, const char *rejection)
{
    const FaceSearch found = FindFaceNear(pos, end, reach, test);
    if (found == FaceSearch::kFound)
        Explain(rejection);
    if (found == FaceSearch::kOutOfMemory)
        growthstate.running = 0;
    return found != FaceSearch::kNone;
}

static bool IsNearEdge(Vector pos, const Triangle &t)
{
    for (int edge = 0; edge < 3; edge++) {
        Vector closest;
        double mu;
        const double distance = PointLine3D(pos, t.p[edge], t.p[(edge + 1) % 3], &closest, &mu);
        if (mu >= 0 && mu <= 1 && distance < growthstate.branchlength)
            return true;
    }
    return false;
}

static void Explain(const char *rejection)
{
    if (options.debug)
        fputs(rejection, stderr);
}
