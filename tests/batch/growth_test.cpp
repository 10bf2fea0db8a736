#include "batch/growth.h"

#include <gtest/gtest.h>

#include "batch/progress.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"

static GrowthEnd GrowFor(const Recipe &stops, RunRecord *run, int stallsteps = kStallSteps)
{
    return Grow({stops, {}, 0, true, stallsteps}, run);
}

// The loop stops at the very particle and the very step, and leaves what plain steps leave.
TEST(BatchGrowth, StopsWhereItIsAskedTo)
{
    StartAfresh();
    Recipe stops;
    stops.particles = 500;
    RunRecord run;
    EXPECT_EQ(GrowFor(stops, &run), kStopReached);
    EXPECT_EQ(ncells, 500);
    EXPECT_EQ(growthstate.stepcount, 0);
    const long taken = growthstate.steptotal;
    const Outcome grown = TakeOutcome();

    StartAfresh();
    for (long i = 0; i < taken; i++)
        IterateSystem();
    EXPECT_EQ(Difference(TakeOutcome(), grown), "");

    StartAfresh();
    Recipe steps;
    steps.steps = taken - 1;
    RunRecord other;
    EXPECT_EQ(GrowFor(steps, &other), kStopReached);
    EXPECT_EQ(growthstate.steptotal, taken - 1);
    EXPECT_EQ(ncells, 499);

    Recipe minutes;
    minutes.minutes = 0.001;
    EXPECT_EQ(GrowFor(minutes, &other), kStopReached);
    EXPECT_GT(ncells, 499);
}

// A root that no walker can come to.
TEST(BatchGrowth, EndsWhereNoParticleArrivesAnyMore)
{
    StartAfresh();
    cells[0].p = {100, 0, 0};
    ForgetAggregate();
    Recipe stops;
    stops.particles = 10;
    RunRecord run;
    EXPECT_EQ(GrowFor(stops, &run, 123456), kStalled);
    EXPECT_EQ(growthstate.steptotal, 123456);
    EXPECT_EQ(ncells, 1);
    EXPECT_EQ(GrowFor(stops, &run, 123456), kStalled) << "and stays so";
}

// What is printed of a run in which so many particles have come in 10 seconds.
static std::string Told(int arrived)
{
    const Recipe recipe;
    Progress progress(recipe, false);
    ncells += arrived;
    testing::internal::CaptureStdout();
    progress.Report(10);
    ncells -= arrived;
    return testing::internal::GetCapturedStdout();
}

TEST(BatchGrowth, ASlowRunSaysWhy)
{
    const struct {
        double *setting;
        double value;
        const char *reason;
    } rows[] = {
        {&growthstate.stickiness, 5,
         "few walkers that come near stick; the bias drives walkers away from the roots"},
        {&growthstate.intersectrange, 2, "branches that come near to others are refused; the bias"},
        {&growthstate.launchscale, 10,
         "walkers start 120 branch lengths away, and live 10,000 steps; the bias"},
        {&growthstate.killingscale, 2, "walkers far away go step by step, without flights; the bias"},
        {&growthstate.branchlength, 1e17, "no particle is found that is 1e16 away or farther; the bias"},
    };
    const std::string slow = "\n3 particles in the last 10 s: slow, since ";
    for (const auto &row : rows) {
        StartAfresh();
        EXPECT_EQ(Told(3).find("slow"), std::string::npos) << "nothing is known to be";
        *row.setting = row.value;
        EXPECT_NE(Told(3).find(slow + row.reason), std::string::npos) << Told(3);
        EXPECT_EQ(Told(1000).find("slow"), std::string::npos);
    }
    StartAfresh();
    growthstate.nroots = 17;
    growthstate.association = 1;
    growthstate.bias = 0;
    EXPECT_NE(Told(3).find(slow + "with association a particle sticks to one in 17 only\n"),
              std::string::npos);
}
