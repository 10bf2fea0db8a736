#include "batch/growth.h"

#include <gtest/gtest.h>

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
