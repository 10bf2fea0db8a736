#include "growth/generators.h"

// Number of draws of rand that are discarded after seeding.
constexpr int kDiscarded = 10 * kFeedbackWords;

GeneratorState generators;

void SeedGenerators(int seed)
{
    generators.congruence = uint64_t{static_cast<uint32_t>(seed)} << 16 | 0x330E;
    // The multiplicative generator of Park and Miller (Comm. ACM 31 (1988) 1192) fills the ring. Negative
    // remainders, from a negative seed, are made positive.
    int64_t word = seed == 0 ? 1 : seed;
    for (uint32_t &filled : generators.words) {
        filled = static_cast<uint32_t>(word);
        word = word * 16807 % 2147483647;
        if (word < 0)
            word += 2147483647;
    }
    generators.oldest = kFeedbackLag;
    for (int i = 0; i < kDiscarded; i++)
        DrawInteger();
}
