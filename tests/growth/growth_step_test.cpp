#include "growth/growth_step.h"

#include <climits>
#include <cstdlib>
#include <optional>

#include <gtest/gtest.h>

#include "growth/deferred_flows.h"
#include "growth/flights.h"
#include "growth/generators.h"
#include "growth/scenario.h"

TEST(GrowthStep, DefaultRunsArePinned)
{
    const struct {
        GrowthStep step;
        bool defers;
        unsigned long long hash;
    } rows[] = {{IterateSystem, false, 0xb4129258beabd5deULL},
                {IterateFlights, false, 15076729422143229395ULL},
                {IterateFlights, true, 15076729422143229395ULL}};
    for (const auto &row : rows) {
        StartAfresh();
        std::optional<DeferredFlows> flows;
        if (row.defers)
            flows.emplace();
        Grow(row.step, 20000, LONG_MAX);
        flows.reset();
        EXPECT_EQ(HashParticles(20000), row.hash) << std::hex << HashParticles(20000);
    }
}

TEST(Generators, DrawWhatTheLibraryDraws)
{
    for (const int seed : {0, 1, -7, 2147483647, -2147483647 - 1}) {
        srand(static_cast<unsigned>(seed));
        srand48(seed);
        SeedGenerators(seed);
        for (int i = 0; i < 20000; i++)
            ASSERT_TRUE(DrawUniform() == drand48() && DrawInteger() == rand()) << seed << ", draw " << i;
    }
}
