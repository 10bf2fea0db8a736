// Flights: that they are free of particles, follow from the run's records alone, and grow what steps grow.

#include "growth/flights.h"

#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "analysis/dimension.h"
#include "growth/growth_step.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "growth/walker.h"
#include "search/neighbour_search.h"

namespace
{
struct Setting {
    const char *name;
    double bias = 0.1, branchlength = 1, stickiness = 100;
    bool association = false;
    double killingscale = 1;
};
} // namespace

static void Start(const Setting &setting, int seed)
{
    StartAfresh();
    growthstate.seed = seed;
    growthstate.bias = setting.bias;
    growthstate.branchlength = setting.branchlength;
    growthstate.stickiness = setting.stickiness;
    growthstate.association = setting.association;
    growthstate.killingscale = setting.killingscale;
    growthstate.launchscale = setting.killingscale > 1 ? 2 : 1;
    growthstate.nroots = setting.association ? 3 : 1;
    growthstate.roottype = setting.association ? kRootRingX : kRootOrigin;
    RestartFromRoots();
}

static double NearestPartner()
{
    double nearest = HUGE_VAL;
    const int classes = growthstate.association ? growthstate.nroots : 1;
    for (int i = ncells % classes; i < ncells; i += classes)
        nearest = std::min(nearest, VectorLength(cells[i].p, growthstate.pos));
    return nearest;
}

// Walkers fly within free balls, and growth does not depend on when the neighbour search was built.
TEST(Flights, FollowFromTheRecordsAlone)
{
    for (const Setting &setting :
         {Setting{"bias 1", 1}, Setting{"short", 0.1, 0.3}, Setting{"associated", 0.1, 1, 100, true},
          Setting{"far away", 0.1, 1, 100, false, 10}}) {
        Start(setting, 1);
        double reached = 0;
        int asked = 0;
        for (long move = 0; ncells < 2500; move++) {
            const double b = setting.branchlength, nearest = move % 500 == 0 ? NearestPartner() : 0;
            if (nearest > 0) {
                ASSERT_LE(FreeRadius(), nearest - b) << setting.name;
            }
            if (nearest > 5 * b && Modulus(growthstate.pos) < AggregateReach()) {
                reached += (FreeRadius() + b) / nearest;
                asked++;
            }
            const Vector before = growthstate.pos;
            IterateFlights();
            if (move % 50 == 0 && VectorLength(before, growthstate.pos) > 1.9 * b) {
                ASSERT_GE(NearestPartner(), b * (1 - 1e-9)) << setting.name;
            }
        }
        EXPECT_GT(reached / asked, 0.5) << setting.name; // of the distance to the nearest particle
        const Outcome expected = TakeOutcome();
        std::mt19937 random(1);
        Start(setting, 1);
        while (ncells < 2500) {
            if (random() % 3000 == 0)
                FreeNeighbourIndex();
            IterateFlights();
        }
        EXPECT_EQ(Difference(expected, TakeOutcome()), "") << setting.name;
    }
}

// Radii of gyration of twenty aggregates of each walk, fewer under the sanitizers; docs/flights.md has the large
// comparison.
TEST(Flights, GrowWhatStepsGrow)
{
    constexpr int kAggregates = std::max(SARKELO_HISTORIES / 3, 6);
    for (const Setting &setting : {Setting{"bias 1", 1}, Setting{"stickiness 5", 0.1, 1, 5}}) {
        double mean[2] = {0, 0}, squares = 0;
        for (const bool flies : {false, true}) {
            for (int seed = 1; seed <= kAggregates; seed++) {
                Start(setting, seed + 1000 * flies);
                Grow(flies ? IterateFlights : IterateSystem, 1000, 100000000);
                mean[flies] += RadiusOfGyration() / kAggregates;
                squares += RadiusOfGyration() * RadiusOfGyration() / kAggregates;
            }
        }
        const double variance = squares - mean[0] * mean[0] - mean[1] * mean[1];
        EXPECT_NEAR(mean[0], mean[1], 4 * std::sqrt(variance / (kAggregates - 1))) << setting.name;
    }
}
