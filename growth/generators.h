// The two random generators of growth, drand48 and rand, implemented here: the same draws on every machine,
// independent of the C library's state.
//
//   drand48: x = (0x5DEECE66D x + 0xB) mod 2^48, and x / 2^48 is the draw (POSIX).
//   rand:    r[i] = (r[i - 31] + r[i - 3]) mod 2^32, and r[i] / 2, rounded down, is the draw: the additive
//            feedback generator of Knuth, The Art of Computer Programming, vol. 2, section 3.2.2, as the GNU
//            C library implements it.

#pragma once

#include <cstdint>

constexpr int kFeedbackWords = 31;
constexpr int kFeedbackLag = 3;

struct GeneratorState {
    uint64_t congruence;            // x, 48 bits
    uint32_t words[kFeedbackWords]; // the last 31 values r, in a ring buffer
    int oldest;                     // index of r[i - 31]
};
extern GeneratorState generators;

// Seeds both generators as srand48 and srand do.
void SeedGenerators(int seed);

// The next draw of drand48: uniform in [0, 1).
inline double DrawUniform()
{
    constexpr uint64_t mask = (uint64_t{1} << 48) - 1;
    generators.congruence = (generators.congruence * 0x5DEECE66DU + 0xB) & mask;
    return static_cast<double>(static_cast<int64_t>(generators.congruence)) * 0x1p-48;
}

// The next draw of rand: 0 to 2^31 - 1.
inline int DrawInteger()
{
    const int oldest = generators.oldest;
    int recent = oldest - kFeedbackLag;
    if (recent < 0)
        recent += kFeedbackWords;
    generators.words[oldest] += generators.words[recent];
    generators.oldest = oldest + 1 == kFeedbackWords ? 0 : oldest + 1;
    return static_cast<int>(generators.words[oldest] >> 1);
}
