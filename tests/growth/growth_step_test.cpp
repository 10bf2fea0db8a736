#include "growth/growth_step.h"

#include <climits>
#include <cstdlib>
#include <optional>

#include <gtest/gtest.h>

#include "growth/deferred_flows.h"
#include "growth/flights.h"
#include "growth/flows.h"
#include "growth/generators.h"
#include "growth/replay.h"
#include "growth/scenario.h"
#include "search/neighbour_search.h"

// Large enough that the neighbour search has been rebuilt, its maps have grown, and cells has moved. A replay gives
// the first half, and flows added path after path, for lack of memory, are the same.
TEST(GrowthStep, LargeRunsHaveTheirHashes)
{
    const struct {
        GrowthStep step;
        bool defers;
        double branchlength;
        int particles;
        unsigned long long hash;
    } rows[] = {{IterateSystem, false, 1, 20000, 0xb4129258beabd5deULL},
                {IterateSystem, true, 0.4, 2000, 0xa3bedc2db5d4cba5ULL},
                {IterateFlights, false, 1, 20000, 0xd13b4d878d870dd3ULL},
                {IterateFlights, true, 1, 20000, 0xd13b4d878d870dd3ULL}};
    for (const auto &row : rows) {
        StartWith({{&growthstate.branchlength, row.branchlength}});
        std::optional<DeferredFlows> flows;
        if (row.defers)
            flows.emplace();
        Grow(row.step, row.particles / 2, LONG_MAX);
        SettleFlows();
        const unsigned long long half = HashParticles(row.particles / 2);
        Grow(row.step, row.particles, LONG_MAX);
        flows.reset();
        EXPECT_EQ(HashParticles(ncells), row.hash) << std::hex << HashParticles(ncells);
        {
            const Replay replay;
            replay.GrowTo(row.particles / 2);
            EXPECT_EQ(HashParticles(ncells), half);
        }
        EXPECT_EQ(HashParticles(ncells), row.hash);
        for (int i = 0; i < ncells; i++)
            cells[i].weight = 0;
        for (int i = 1; i < ncells; i++)
            AddFlowWithoutTables(cells[i].parent);
        EXPECT_EQ(HashParticles(ncells), row.hash);
    }
}

TEST(Generators, DrawAsTheLibraryDoes)
{
    for (const int seed : {0, 1, -7, 2147483647, -2147483647 - 1}) {
        srand(static_cast<unsigned>(seed));
        srand48(seed);
        SeedGenerators(seed);
        for (int i = 0; i < 20000; i++)
            ASSERT_TRUE(DrawUniform() == drand48() && DrawInteger() == rand()) << seed << ", draw " << i;
    }
}

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

TEST(NeighbourSearch, FindsAParticleThatWasMoved)
{
    StartWith({{&growthstate.bias, 0}});
    Grow(IterateSystem, 31, 1000000);
    EXPECT_LT(CurrentFreeBall().radius2, 0); // no ball is free for sure once a particle has stuck
    cells[30].p = {100, 100, 100};
    growthstate.radius = 500;
    while (ncells == 31) {
        growthstate.pos = {100, 100, 100.9};
        growthstate.stepcount = 1;
        IterateSystem();
    }
    EXPECT_EQ(cells[31].parent, 30);
}
