#include "analysis/box_count.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "base/array.h"
#include "growth/growth_step.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/scenario.h"

namespace
{
// A count written as it is described: one box after the other, each looked at through all particles.
struct PlainCount {
    const double &radius = growthstate.radius; // as it is at each step
    double scale;
    int depth = 0;
    Vector p0;
    double boxsize[10] = {};
    int boxcount[10];
    std::vector<Box> found;

    PlainCount()
    {
        scale = radius / 2;
        std::fill(boxcount, boxcount + 10, -1);
        boxcount[0] = 0;
        boxsize[0] = scale;
        p0 = {-radius - scale, -radius - scale, -radius - scale};
    }
    bool Step()
    {
        const Vector p1 = {p0.x + scale, p0.y + scale, p0.z + scale};
        for (int i = 0; i < ncells; i++)
            if (cells[i].parent >= 0 && LineInBox(p0, p1, cells[i].p, cells[cells[i].parent].p)) {
                boxcount[depth]++;
                found.push_back({p0, p1});
                break;
            }
        p0.z += scale;
        if (p0.z <= radius)
            return false;
        p0.z = -radius - scale;
        p0.y += scale;
        if (p0.y <= radius)
            return false;
        p0.y = -radius - scale;
        p0.x += scale;
        if (p0.x <= radius)
            return false;
        p0.x = -radius - scale;
        scale /= 1.5;
        depth++;
        boxsize[depth] = scale;
        boxcount[depth] = 0;
        found.clear();
        return scale < 2 * growthstate.branchlength || depth == 9;
    }
};
} // namespace

// With the radius changed to `later` after so many boxes, where that is not 0.
static void ExpectSameCount(const char *what, double later = 0, int after = 0)
{
    stats.boxcount[9] = 77; // left from before
    PlainCount plain;
    StartBoxCount();
    for (bool ended = false; !ended;) {
        if (later != 0 && after-- == 0)
            growthstate.radius = later;
        ended = plain.Step();
        ASSERT_EQ(CountNextBox(), ended) << what;
        ASSERT_EQ(memcmp(stats.boxcount, plain.boxcount, sizeof plain.boxcount), 0)
            << what << " " << plain.depth;
        ASSERT_EQ(nboxes, static_cast<int>(plain.found.size()));
        ASSERT_TRUE(nboxes == 0 || memcmp(boxes, plain.found.data(), plain.found.size() * sizeof(Box)) == 0)
            << what;
    }
    for (int level = 0; level <= plain.depth; level++)
        EXPECT_EQ(stats.boxsize[level], plain.boxsize[level]);
    EXPECT_EQ(options.boxcountrequest, 0);
    EXPECT_EQ(CountNextBox(), 0); // nothing more without a request
}

class BoxCount : public testing::Test
{
protected:
    void SetUp() override
    {
        StartAfresh();
        SetProgramDefaults();
    }

    // Particles at the points, each but the first a child of the one before.
    static void Chain(const std::vector<Vector> &points)
    {
        ASSERT_TRUE(ResizeArray(&cells, points.size()));
        ncells = 0;
        growthstate.radius = 0;
        for (const Vector &p : points) {
            cells[ncells] = {p, 0, ncells - 1, 0};
            ncells++;
            growthstate.radius = std::max(growthstate.radius, Modulus(p));
        }
    }

    static double Slope(int first)
    {
        StartBoxCount();
        while (!CountNextBox())
            ;
        EXPECT_GT(stats.boxcount[first + 3], 0); // at least four levels
        return FitBoxCount(first).slope;
    }
};

TEST_F(BoxCount, EqualsThePlainCount)
{
    ExpectSameCount("one root");
    Chain({{0, 0, 0}, {3, 4, 1}});
    growthstate.radius = 10;
    ExpectSameCount("one branch");
    growthstate.branchlength = 5;
    ExpectSameCount("branch length over a quarter of the radius");
    EXPECT_EQ(stats.boxcount[2], -1);
    // Ends on the corners of the first level, along its planes, and beyond the radius.
    growthstate.branchlength = 1;
    Chain({{0, 0, 0}, {5, 0, 0}, {5, 5, 0}, {5, 5, -10}, {-10, -10, -10}, {30, 2, 2}, {-5, 2.5, 40}});
    growthstate.radius = 10;
    ExpectSameCount("on the corners");
    // Into the row of boxes below the radius, from a corner of the plane above it and from outside.
    for (const Vector from : {Vector{2, 2, -5}, Vector{2, 2, -10}, Vector{2, -10, -12}, Vector{2, 2, 40}}) {
        Chain({from, {2, 2, -12}});
        growthstate.radius = 10;
        ExpectSameCount("below the radius");
    }
    growthstate.branchlength = 0.1;
    Chain({{0, 0, 0}, {0.5, 0.25, 0.125}, {0.6, -0.7, 0.3}});
    ExpectSameCount("ten levels");
    EXPECT_EQ(stats.boxcount[9], -1);
    growthstate.branchlength = 0.001; // as no panel lets it be
    growthstate.radius = 0.5;
    ExpectSameCount("ten levels reached");
    EXPECT_EQ(stats.boxcount[9], 0);

    for (const int seed : {1, 2}) {
        StartAfresh();
        growthstate.seed = seed;
        growthstate.nroots = 3;
        growthstate.roottype = seed == 1 ? kRootRingX : kRootSpherical;
        growthstate.branchlength = seed == 1 ? 1 : 0.7;
        RestartFromRoots();
        Grow(IterateSystem, 300, 10000000);
        ExpectSameCount("grown");
        const double radius = growthstate.radius;
        for (const double later : {0.3 * radius, 0.99 * radius, 1.7 * radius}) {
            growthstate.radius = radius;
            ExpectSameCount("grown, the radius changes", later, static_cast<int>(500 + later));
        }
        growthstate.radius = radius;
    }
}

TEST_F(BoxCount, SlopesAreTheDimensions)
{
    std::vector<Vector> line, plane, cube;
    for (int i = -300; i <= 300; i++)
        line.push_back({0.3 * i, 0.2 * i, 0.1 * i});
    for (int i = -60; i <= 60; i++)
        for (int j = -60; j <= 60; j++)
            plane.push_back({0.5 * i, 0.5 * (i % 2 == 0 ? j : -j), 0.3});
    for (int i = -24; i <= 24; i++)
        for (int j = -24; j <= 24; j++)
            for (int k = -24; k <= 24; k++)
                cube.push_back({0.5 * i, 0.5 * (i % 2 == 0 ? j : -j), 0.5 * ((i + j) % 2 == 0 ? k : -k)});
    // Boxes at the rim are counted whole: N is near (L/s + 1)^d, so the slope comes to d from below.
    growthstate.branchlength = 0.25;
    Chain(line);
    EXPECT_NEAR(Slope(4), 1, 0.05);
    Chain(plane);
    EXPECT_NEAR(Slope(4), 2, 0.1);
    Chain(cube);
    EXPECT_NEAR(Slope(4), 3, 0.2);
}

TEST_F(BoxCount, ModesAreRestoredAlsoAfterASecondRequest)
{
    Grow(IterateSystem, 50, 1000000);
    options.surfacemode = kSurfaceSolid;
    options.dlamode = kAggregateTubes;
    StartBoxCount();
    EXPECT_EQ(options.surfacemode, 0);
    EXPECT_EQ(options.dlamode, kAggregateLines);
    EXPECT_EQ(stats.timestep, 50);
    for (int i = 0; i < 100; i++)
        CountNextBox();
    StartBoxCount(); // anew
    EXPECT_EQ(stats.boxcount[0], 0);
    EXPECT_EQ(stats.boxcount[1], -1);
    while (!CountNextBox())
        ;
    EXPECT_EQ(options.surfacemode, kSurfaceSolid);
    EXPECT_EQ(options.dlamode, kAggregateTubes);
}

// The rest of the count goes on with what the restart has left, which are roots alone.
TEST_F(BoxCount, ARestartWhileCounting)
{
    Grow(IterateSystem, 500, 10000000);
    StartBoxCount();
    for (int i = 0; i < 400; i++)
        CountNextBox();
    InitialiseGrowth();
    EXPECT_EQ(stats.timestep, 0);
    const int counted = stats.boxcount[1];
    while (!CountNextBox())
        ;
    EXPECT_EQ(stats.boxcount[1], counted);
    EXPECT_EQ(stats.boxcount[2], 0);
    EXPECT_EQ(growthstate.running, 1);

    // As many particles as before, and all of them roots.
    growthstate.nroots = 3;
    growthstate.roottype = kRootSpherical;
    RestartFromRoots();
    cells[1].parent = cells[2].parent = 0;
    StartBoxCount();
    RestartFromRoots();
    while (!CountNextBox())
        ;
    EXPECT_EQ(*std::max_element(stats.boxcount, stats.boxcount + 10), 0);
}

TEST_F(BoxCount, OddRadiiAndPositionsEnd)
{
    for (const double radius : {HUGE_VAL, std::nan(""), 0.0, -1.0}) {
        growthstate.radius = radius;
        StartBoxCount();
        EXPECT_EQ(CountNextBox(), 1) << radius;
    }
    Chain({{0, 0, 0}, {std::nan(""), 1, 2}, {HUGE_VAL, 0, 0}, {1e308, -1e308, 3}});
    growthstate.radius = 10;
    ExpectSameCount("not numbers");
    growthstate.radius = 1e308;
    growthstate.branchlength = 1e307;
    ExpectSameCount("as far as numbers go");
}

TEST(BranchDistribution, ClassesAddUp)
{
    StartAfresh();
    stats = {};
    ncells = 0;
    AppendToArray(&cells, &ncells, Particle{{}, 0, -1, 0});
    for (int i = 0; i < 12; i++) // twelve children of the root, and one of the first of them
        AppendToArray(&cells, &ncells, Particle{{}, 0, 0, 0});
    AppendToArray(&cells, &ncells, Particle{{}, 0, 1, 0});
    EXPECT_EQ(CountBranches(), 1);
    const int once[10] = {12, 1, 0, 0, 0, 0, 0, 0, 0, 1};
    EXPECT_EQ(memcmp(stats.branchcount, once, sizeof once), 0);
    InitialiseGrowth(); // forgets the time step only
    ncells = 0;
    CountBranches();
    EXPECT_EQ(memcmp(stats.branchcount, once, sizeof once), 0);
    ncells = 14;
    CountBranches();
    EXPECT_EQ(stats.branchcount[0], 24);
}
