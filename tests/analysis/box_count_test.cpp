#include "analysis/box_count.h"

#include <array>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "analysis/dimension.h"
#include "base/array.h"
#include "golden.h"
#include "growth/growth_step.h"
#include "growth/roots.h"
#include "growth/scenario.h"

// Counts boxes, the radius being `later` after 500 of them: a hash of what there is after every call, and the levels.
static std::string Counted(double later)
{
    StartBoxCount();
    std::ostringstream text;
    unsigned long long hash = Hash(nullptr, 0);
    for (int calls = 1, ended = 0; !ended; calls++) {
        ended = CountNextBox();
        hash = Hash(stats.boxcount, sizeof stats.boxcount, hash);
        if (nboxes > 0)
            hash = Hash(&boxes[nboxes - 1], sizeof(Box), hash);
        if (calls == 500 || ended)
            growthstate.radius = later;
    }
    text << "hash " << hash << ':';
    for (int level = 0; level < kBoxLevels && stats.boxcount[level] >= 0; level++)
        text << ' ' << stats.boxcount[level] << " of " << stats.boxsize[level];
    return text.str() + '\n';
}

TEST(BoxCount, MatchesExpectedText)
{
    const double nan = std::nan("");
    std::string text;
    const struct {
        std::string what;
        double radius, branchlength;
        std::vector<Vector> points; // each but the first a child of the one before
    } chains[] = {
        {"one root: ", 10, 1, {{0, 0, 0}}},
        {"branch length over a quarter of the radius: ", 10, 5, {{0, 0, 0}, {3, 4, 1}}},
        {"on corners, along planes: ", 10, 1, {{5, 0, 0}, {5, 5, 0}, {5, 5, -10}, {-10, -10, -10}}},
        {"beyond the radius: ", 10, 1, {{2, 2, -5}, {2, 2, -12}, {2, -10, -12}, {15, 15, 15}, {-5, 2, 40}}},
        {"ten levels: ", 0.5, 0.001, {{0, 0, 0}, {0.5, 0.25, 0.125}, {0.3, -0.4, 0.3}}},
        {"not finite: ", 10, 1, {{0, 0, 0}, {nan, 1, 2}, {HUGE_VAL, 0, 0}, {1e308, -1e308, 3}}}};
    for (const auto &chain : chains) {
        StartAfresh();
        ncells = 0;
        for (const Vector &p : chain.points)
            AppendToArray(&cells, &ncells, Particle{p, 0, ncells - 1, 0});
        growthstate.radius = chain.radius;
        growthstate.branchlength = chain.branchlength;
        text += chain.what + Counted(chain.radius);
    }
    GrowthState &g = growthstate;
    StartWith({{&g.nroots, 3}, {&g.roottype, kRootSpherical}, {&g.branchlength, 0.7}});
    Grow(IterateSystem, 300, 10000000);
    for (const double radius : {20.0, 6.0, 19.8, 34.0, HUGE_VAL, nan, 0.0}) // each changes to the next
        text += "grown: " + Counted(radius);
    ExpectGolden("box_counts.txt", text);
}

TEST(BoxCount, GoesOnAfterARestartAndRestoresDrawing)
{
    StartAfresh();
    Grow(IterateSystem, 500, 10000000);
    options.surfacemode = kSurfaceSolid;
    options.dlamode = kAggregateTubes;
    StartBoxCount();
    StartBoxCount();
    EXPECT_TRUE(options.surfacemode == 0 && options.dlamode == kAggregateLines);
    for (int i = 0; i < 400; i++)
        CountNextBox();
    InitialiseGrowth(); // only the root is left
    while (!CountNextBox())
        ;
    EXPECT_TRUE(stats.boxcount[1] > 0 && stats.boxcount[2] == 0 && CountNextBox() == 0);
    EXPECT_TRUE(options.surfacemode == kSurfaceSolid && options.dlamode == kAggregateTubes);
}

TEST(BranchDistribution, CountsAddUpAndEndWithNineBranches)
{
    StartAfresh();
    stats = {};
    ncells = 0;
    for (const int parent : {-1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1})
        AppendToArray(&cells, &ncells, Particle{{}, 0, parent, 0});
    EXPECT_TRUE(CountBranches() && CountBranches());
    EXPECT_EQ(std::to_array(stats.branchcount), (std::array{24, 2, 0, 0, 0, 0, 0, 0, 0, 2}));
}

TEST(Dimension, FitsAndCurvesHaveTheirNumbers)
{
    const double x[] = {2, 0, 1}, y[] = {4, 1, 3};
    std::ostringstream text;
    for (const std::size_t n : {0U, 1U, 2U, 3U}) {
        const LineFit fit = FitLine({x, n}, {y, n});
        for (const double number : {fit.first, fit.last, fit.slope, fit.slopeerror})
            text << ' ' << std::fabs(number);
        text << ' ' << fit.points << ';';
    }
    StartAfresh();
    Grow(IterateSystem, 40, 1000000);
    for (const Gyration &at : GyrationByNumber(10))
        text << ' ' << at.number;
    EXPECT_EQ(text.str(), " nan nan nan nan 0; 2 2 nan nan 1; 0 2 1.5 nan 2; 0 2 1.5 0.288675 3;"
                          " 10 13 16 20 25 32 40");
    EXPECT_EQ(RadiusOfGyration(), GyrationByNumber(10).back().radius);
}
