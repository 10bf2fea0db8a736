#include "growth/generators.h"

#include <cstdlib>

#include <gtest/gtest.h>

TEST(Generators, DrawWhatTheLibraryDraws)
{
    for (const int seed : {0, 1, 12345, -7, 2147483647, -2147483647 - 1}) {
        srand(static_cast<unsigned>(seed));
        srand48(seed);
        SeedGenerators(seed);
        for (int i = 0; i < 20000; i++) {
            ASSERT_EQ(DrawUniform(), drand48()) << seed << ", draw " << i;
            ASSERT_EQ(DrawInteger(), rand()) << seed << ", draw " << i;
        }
    }
}
