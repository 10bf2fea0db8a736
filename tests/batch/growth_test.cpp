#include "batch/growth.h"

#include <gtest/gtest.h>

#include "batch/progress.h"
#include "growth/aggregate.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"

static GrowthEnd GrowFor(const Recipe &stops, int stallsteps = kStallSteps)
{
    RunRecord run;
    return Grow({stops, {}, 0, true, stallsteps}, &run);
}

// The loop stops at the very particle and the very step, and leaves what plain steps leave.
TEST(BatchGrowth, StopsWhereAsked)
{
    Recipe particles, steps, minutes;
    StartAfresh();
    particles.particles = 500;
    EXPECT_EQ(GrowFor(particles), kStopReached);
    EXPECT_TRUE(ncells == 500 && growthstate.stepcount == 0);
    const long taken = growthstate.steptotal;
    const Outcome grown = TakeOutcome();
    StartAfresh();
    for (long i = 0; i < taken; i++)
        IterateSystem();
    EXPECT_EQ(Difference(TakeOutcome(), grown), "");

    StartAfresh();
    steps.steps = taken - 1;
    EXPECT_EQ(GrowFor(steps), kStopReached);
    EXPECT_TRUE(growthstate.steptotal == taken - 1 && ncells == 499);
    minutes.minutes = 0.001;
    EXPECT_EQ(GrowFor(minutes), kStopReached);
    EXPECT_GT(ncells, 499);

    StartAfresh();
    cells[0].p = {100, 0, 0}; // no walker comes there
    ForgetAggregate();
    for (int run = 0; run < 2; run++)
        EXPECT_EQ(GrowFor(particles, 123456), kStalled);
    EXPECT_EQ(growthstate.steptotal, 123456);
}

// What is printed of a run in which so many particles have come in 10 seconds
static std::string Reported(int arrived)
{
    Recipe recipe;
    recipe.particles = 5000;
    recipe.minutes = 90;
    Progress progress(recipe, false);
    ncells += arrived;
    testing::internal::CaptureStdout();
    progress.Report(10);
    ncells -= arrived;
    return testing::internal::GetCapturedStdout();
}

TEST(BatchGrowth, ReportsProgressAndWhyItIsSlow)
{
    const std::string slow = "\n99 particles in the last 10 s: slow, since ";
    const struct {
        std::vector<Setting> settings;
        std::string reason;
    } rows[] = {
        {{{&growthstate.stickiness, 49}},
         "few walkers that come near stick; the bias drives walkers away from the roots"},
        {{{&growthstate.intersectrange, 2}}, "branches that come near to others are refused; the bias"},
        {{{&growthstate.launchscale, 10}},
         "walkers start 120 branch lengths away, and live 10,000 steps; the bias"},
        {{{&growthstate.killingscale, 2}}, "walkers far away go step by step, without flights; the bias"},
        {{{&growthstate.branchlength, 1e17}}, "no particle is found that is 1e16 away or farther; the bias"},
        {{{&growthstate.nroots, 17}, {&growthstate.association, 1}},
         "with association a particle sticks to one in 17 only"},
    };
    for (const auto &[settings, reason] : rows) {
        StartWith(settings);
        EXPECT_NE(Reported(99).find(slow + reason), std::string::npos) << Reported(99);
        EXPECT_EQ(Reported(100).find("slow"), std::string::npos);
    }
    StartAfresh();
    growthstate.bias = 0;
    EXPECT_EQ(Reported(99).find("slow"), std::string::npos);
    growthstate.radius = 3.14;
    EXPECT_EQ(Reported(1030), "1031 particles, 20 %, 103 a second, radius 3.1, 39 s left\n");
    EXPECT_EQ(Reported(49), "50 particles, 1 %, 5 a second, radius 3.1, 16 min 50 s left\n");
    EXPECT_EQ(Reported(1), "2 particles, 0 %, 0 a second, radius 3.1, 1 h 29 min left\n");
}
