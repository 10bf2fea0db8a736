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
