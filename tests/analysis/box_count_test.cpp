#include "analysis/box_count.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>

#include "analysis/dimension.h"
#include "base/array.h"
#include "growth/growth_step.h"
#include "growth/roots.h"
#include "growth/scenario.h"

// A count written as it is described: one box after the other, each looked at through all particles. The program's
// must be the same after every box, with the radius changed to `later` after so many of them, where that is not 0.
static void ExpectSameCount(const char *what, double later = 0, int after = 0)
{
    stats.boxcount[9] = 77; // left from before
    StartBoxCount();
    const double &radius = growthstate.radius;
    double scale = radius / 2, boxsize[10] = {scale};
    int depth = 0, boxcount[10] = {0, -1, -1, -1, -1, -1, -1, -1, -1, -1};
    Vector p0 = {-radius - scale, -radius - scale, -radius - scale};
    std::vector<Box> found;
    for (bool ended = false; !ended;) {
        if (later != 0 && after-- == 0)
            growthstate.radius = later;
        const Vector p1 = {p0.x + scale, p0.y + scale, p0.z + scale};
        const auto meets = [&](const Particle &p) {
            return p.parent >= 0 && LineInBox(p0, p1, p.p, cells[p.parent].p);
        };
        if (std::any_of(cells, cells + ncells, meets)) {
            boxcount[depth]++;
            found.push_back({p0, p1});
        }
        bool next = false; // level
        for (double *c : {&p0.z, &p0.y, &p0.x}) {
            *c += scale;
            next = !(*c <= radius);
            if (!next)
                break;
            *c = -radius - scale;
        }
        if (next) {
            scale /= 1.5;
            depth++;
            boxsize[depth] = scale;
            boxcount[depth] = 0;
            found.clear();
            ended = scale < 2 * growthstate.branchlength || depth == 9;
        }
        ASSERT_EQ(CountNextBox(), ended) << what;
        ASSERT_EQ(memcmp(stats.boxcount, boxcount, sizeof boxcount), 0) << what << " " << depth;
        ASSERT_EQ(nboxes, static_cast<int>(found.size())) << what;
        ASSERT_EQ(nboxes > 0 ? memcmp(boxes, found.data(), found.size() * sizeof(Box)) : 0, 0) << what;
    }
    EXPECT_EQ(memcmp(stats.boxsize, boxsize, (depth + 1) * sizeof(double)), 0) << what;
    EXPECT_TRUE(options.boxcountrequest == 0 && CountNextBox() == 0); // nothing more without a request
}

// With particles at the points, each but the first a child of the one before.
static void ExpectSameCount(const char *what, double radius, double branchlength,
                            const std::vector<Vector> &points)
{
    StartAfresh();
    ncells = 0;
    for (const Vector &p : points)
        AppendToArray(&cells, &ncells, Particle{p, 0, ncells - 1, 0});
    growthstate.radius = radius;
    growthstate.branchlength = branchlength;
    ExpectSameCount(what);
}

TEST(BoxCount, EqualsThePlainCount)
{
    const double nan = std::nan("");
    ExpectSameCount("one root", 10, 1, {{0, 0, 0}});
    ExpectSameCount("branch length over a quarter of the radius", 10, 5, {{0, 0, 0}, {3, 4, 1}});
    ExpectSameCount("on corners, along planes", 10, 1, {{5, 0, 0}, {5, 5, 0}, {5, 5, -10}, {-10, -10, -10}});
    ExpectSameCount("beyond the radius", 10, 1,
                    {{2, 2, -5}, {2, 2, -12}, {2, -10, -12}, {15, 15, 15}, {-5, 2, 40}});
    ExpectSameCount("ten levels", 0.5, 0.001, {{0, 0, 0}, {0.5, 0.25, 0.125}, {0.3, -0.4, 0.3}});
    ExpectSameCount("not finite", 10, 1, {{0, 0, 0}, {nan, 1, 2}, {HUGE_VAL, 0, 0}, {1e308, -1e308, 3}});
    ExpectSameCount("as far as numbers go", 1e308, 1e307, {{0, 0, 0}, {1, 2, 3}});
    GrowthState &g = growthstate;
    StartWith({{&g.nroots, 3}, {&g.roottype, kRootSpherical}, {&g.branchlength, 0.7}});
    Grow(IterateSystem, 300, 10000000);
    const double radius = growthstate.radius;
    for (const double later : {radius, 0.3 * radius, 0.99 * radius, 1.7 * radius}) {
        growthstate.radius = radius;
        ExpectSameCount("grown, the radius changes", later, static_cast<int>(500 + later));
    }
    for (const double odd : {HUGE_VAL, nan, 0.0, -1.0}) {
        growthstate.radius = odd;
        StartBoxCount();
        EXPECT_EQ(CountNextBox(), 1) << odd;
    }
}

TEST(BoxCount, BeginsAnewAndGoesOnAfterARestart)
{
    StartAfresh();
    Grow(IterateSystem, 500, 10000000);
    options.surfacemode = kSurfaceSolid;
    options.dlamode = kAggregateTubes;
    for (const int request : {1, 2}) {
        StartBoxCount();
        EXPECT_TRUE(options.surfacemode == 0 && options.dlamode == kAggregateLines && stats.timestep == 500);
        EXPECT_TRUE(stats.boxcount[0] == 0 && stats.boxcount[1] == -1) << request;
        for (int i = 0; i < 400; i++)
            CountNextBox();
    }
    const int counted = stats.boxcount[1];
    InitialiseGrowth(); // the roots alone are left
    while (!CountNextBox())
        ;
    EXPECT_TRUE(stats.timestep == 0 && stats.boxcount[1] == counted && stats.boxcount[2] == 0);
    EXPECT_TRUE(options.surfacemode == kSurfaceSolid && options.dlamode == kAggregateTubes);
}

TEST(BranchDistribution, ClassesAddUp)
{
    StartAfresh();
    stats = {};
    ncells = 0;
    for (const int parent : {-1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1})
        AppendToArray(&cells, &ncells, Particle{{}, 0, parent, 0});
    EXPECT_TRUE(CountBranches() && CountBranches());
    const int twice[10] = {24, 2, 0, 0, 0, 0, 0, 0, 0, 2};
    EXPECT_EQ(memcmp(stats.branchcount, twice, sizeof twice), 0);
}

TEST(Dimension, FitsHaveTheirErrorsAndCurvesTheirNumbers)
{
    const double x[] = {2, 0, 1}, y[] = {4, 1, 3};
    std::ostringstream text;
    for (const std::size_t n : {0U, 1U, 2U, 3U}) {
        const LineFit fit = FitLine({x, n}, {y, n});
        text << fit.points << ' ' << std::fabs(fit.first) << ' ' << std::fabs(fit.last) << ' '
             << std::fabs(fit.slope) << ' ' << std::fabs(fit.slopeerror) << "; ";
    }
    StartAfresh();
    Grow(IterateSystem, 40, 1000000);
    for (const Gyration &at : GyrationByNumber(10))
        text << at.number << ' ';
    EXPECT_EQ(text.str(), "0 nan nan nan nan; 1 2 2 nan nan; 2 0 2 1.5 nan; 3 0 2 1.5 0.288675; "
                          "10 13 16 20 25 32 40 ");
    EXPECT_EQ(RadiusOfGyration(), GyrationByNumber(10).back().radius);
}
