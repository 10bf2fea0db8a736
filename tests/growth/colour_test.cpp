#include "growth/colour.h"

#include <gtest/gtest.h>

#include "growth/roots.h"
#include "growth/scenario.h"

static void ExpectColour(Colour c, double r, double g, double b)
{
    EXPECT_NEAR(c.r, r, 1e-12);
    EXPECT_NEAR(c.g, g, 1e-12);
    EXPECT_NEAR(c.b, b, 1e-12);
}

TEST(Colour, FlowMapRunsFromBlueToRed)
{
    const struct {
        double v, r, g, b;
    } rows[] = {
        {-1, 0, 0, 1},      {0, 0, 0, 1},   {0.125, 0, 0.5, 1}, {0.25, 0, 1, 1},
        {0.375, 0, 1, 0.5}, {0.5, 0, 1, 0}, {0.625, 0.5, 1, 0}, {0.75, 1, 1, 0},
        {0.875, 1, 0.5, 0}, {1, 1, 0, 0},   {7, 1, 0, 0},
    };
    for (const auto &row : rows) {
        ExpectColour(GetColour(row.v, 0, 1, 1), row.r, row.g, row.b);
        ExpectColour(GetColour(row.v, 1, 0, 1), row.r, row.g, row.b);
    }
    ExpectColour(GetColour(2, 2, 2, 1), 0, 1, 0);
    ExpectColour(GetColour(0.1, 0, 1, 0), 1, 1, 1);
    ExpectColour(GetColour(0.1, 0, 1, 36), 1, 1, 1);
}

TEST(Colour, ParticlesShowTheirFlowOrTheirClass)
{
    StartAfresh();
    growthstate.nroots = 3;
    growthstate.roottype = kRootRingX;
    ResetSeeds();
    growthstate.maxweight = 9;
    cells[0].weight = 9; // a third of the largest flow and more is red
    cells[1].weight = 0;
    cells[2].weight = 1; // log 2 / log 4: the middle of the map

    ExpectColour(ChooseColour(0, kAggregateLines), 1, 0, 0);
    ExpectColour(ChooseColour(1, kAggregateLines), 0, 0, 1);
    ExpectColour(ChooseColour(2, kAggregateLines), 0, 1, 0);
    growthstate.association = 1;
    for (const int mode : {1, 2, 3}) {
        ExpectColour(ChooseColour(1, mode), 0, 1, 0);
        ExpectColour(ChooseColour(2, mode), 0, 0, 1);
        ExpectColour(ChooseColour(5, mode), 0, 0, 1);
    }
    ExpectColour(ChooseColour(1, kAggregateTubes), 0, 0, 1);
    growthstate.nroots = 30; // rows repeat after 21
    ExpectColour(ChooseColour(22, kAggregateLines), 0, 1, 0);
    ExpectColour(ChooseColour(20, kAggregateLines), 0.75, 0.75, 0.75);
    growthstate.nroots = 0; // no division by zero: association has no effect
    ExpectColour(ChooseColour(1, kAggregateLines), 0, 0, 1);
}
