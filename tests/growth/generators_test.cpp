#include "growth/generators.h"

#include <cstdlib>
#include <vector>

#include <gtest/gtest.h>

// Draws of both generators in an order that a seed decides: (which, value).
static std::vector<double> Draw(int count, bool held)
{
    std::vector<double> draws;
    unsigned order = 99;
    for (int left = count; left > 0;) {
        const int batch = std::min(left, 1 + static_cast<int>(order % 150));
        left -= batch;
        const auto drawbatch = [&](auto uniform, auto integer) {
            for (int i = 0; i < batch; i++) {
                order = order * 1664525 + 1013904223;
                draws.push_back((order >> 16) % 2 == 0 ? uniform() : integer());
            }
        };
        if (held) {
            const HeldGenerators session;
            drawbatch(DrawUniform, DrawInteger);
        } else {
            drawbatch(drand48, rand);
        }
        // Between the batches, calls of the library by others.
        draws.push_back(drand48());
        draws.push_back(rand());
    }
    return draws;
}

TEST(Generators, HeldDrawsAreTheLibrarysOwn)
{
    for (const int seed : {0, 1, 12345, -7, 2147483647}) {
        srand(static_cast<unsigned>(seed));
        srand48(seed);
        const std::vector<double> library = Draw(20000, false);
        srand(static_cast<unsigned>(seed));
        srand48(seed);
        EXPECT_EQ(Draw(20000, true), library) << seed;
    }
}

TEST(Generators, AnotherKindOfStateIsLeftToTheLibrary)
{
    char little[32]; // too small for the additive generator of 31 words
    char *usual = initstate(5, little, sizeof little);
    const int first = rand();
    const int second = rand();
    initstate(5, little, sizeof little);
    EXPECT_EQ(rand(), first);
    {
        const HeldGenerators session;
        EXPECT_FALSE(generators.held);
        EXPECT_EQ(DrawInteger(), second);
    }
    setstate(usual);
}
