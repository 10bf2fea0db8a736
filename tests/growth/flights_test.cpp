// Flights: that they are free of particles, follow from the run's records alone, and grow what steps grow.

#include "growth/flights.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "analysis/dimension.h"
#include "growth/growth_step.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "search/neighbour_search.h"

static double NearestPartner()
{
    double nearest = HUGE_VAL;
    const int classes = growthstate.association ? growthstate.nroots : 1;
    for (int i = ncells % classes; i < ncells; i += classes)
        nearest = std::min(nearest, VectorLength(cells[i].p, growthstate.pos));
    return nearest;
}

// The free ball around a walker holds no partner, and growth does not depend on when the neighbour search was built.
TEST(Flights, FollowFromTheRecordsAlone)
{
    GrowthState &g = growthstate;
    const std::vector<Setting> variants[] = {{{&g.bias, 1}},
                                             {{&g.branchlength, 0.3}},
                                             {{&g.association, 1}, {&g.nroots, 3}, {&g.roottype, kRootRingX}},
                                             {{&g.launchscale, 2}, {&g.killingscale, 10}}};
    for (const auto &variant : variants) {
        Outcome outcomes[2];
        for (const bool frees : {false, true}) {
            StartWith(variant);
            for (long move = 0; ncells < 2500; move++) {
                if (frees && move % 2999 == 0)
                    FreeNeighbourIndex();
                ASSERT_TRUE(move % 500 != 0 || FreeRadius() <= NearestPartner() - g.branchlength);
                IterateFlights();
            }
            outcomes[frees] = TakeOutcome();
        }
        EXPECT_EQ(Difference(outcomes[0], outcomes[1]), "") << "variant " << &variant - variants;
    }
}

// Radii of gyration of twenty aggregates of each walk; docs/flights.md has the large comparison.
TEST(Flights, GrowWhatStepsGrow)
{
    constexpr int kAggregates = std::max(SARKELO_HISTORIES / 3, 6);
    for (const Setting &setting : {Setting{&growthstate.bias, 1}, Setting{&growthstate.stickiness, 5}}) {
        double mean[2] = {0, 0}, squares = 0;
        for (const bool flies : {false, true}) {
            for (int seed = 1; seed <= kAggregates; seed++) {
                StartWith({setting, {&growthstate.seed, seed + 1000.0 * flies}});
                Grow(flies ? IterateFlights : IterateSystem, 1000, 100000000);
                mean[flies] += RadiusOfGyration() / kAggregates;
                squares += RadiusOfGyration() * RadiusOfGyration() / kAggregates;
            }
        }
        const double variance = squares - mean[0] * mean[0] - mean[1] * mean[1];
        EXPECT_NEAR(mean[0], mean[1], 4 * std::sqrt(variance / (kAggregates - 1))) << setting.value;
    }
}
