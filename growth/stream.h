// The random numbers of one particle of flights.
//
// Philox4x32-10 (J. K. Salmon et al., "Parallel Random Numbers: As Easy as 1, 2, 3", SC 2011) is a function of a key and
// a counter, so a stream needs no state of another stream: all streams of a seed can be drawn from at the same time, and
// each can be drawn from again.

#pragma once

#include <cstdint>

#include <Random123/philox.h>

// What a stream is for. Streams for different purposes never share a draw.
enum StreamPurpose { kStreamOfGrowth, kStreamOfProbes };

class Stream
{
public:
    Stream() = default;
    // The stream with this number, among those of a seed.
    Stream(int seed, int number, StreamPurpose purpose = kStreamOfGrowth)
        : key{{static_cast<uint32_t>(seed), 0}}, counter{{0, 0, static_cast<uint32_t>(number),
                                                          static_cast<uint32_t>(purpose)}}
    {
    }

    // Uniform in [0, 1), a multiple of 2^-32.
    double Uniform() { return 0x1p-32 * Word(); }

    // 0 to 2^31 - 1.
    int Integer() { return static_cast<int>(Word() >> 1); }

private:
    static constexpr int kWords = 4;

    uint32_t Word()
    {
        if (next == kWords) {
            words = r123::Philox4x32()(counter, key);
            if (++counter[0] == 0)
                counter[1]++;
            next = 0;
        }
        return words[next++];
    }

    r123::Philox4x32::key_type key = {};
    r123::Philox4x32::ctr_type counter = {}; // of the next words: 64 bits of a count, the number, the purpose
    r123::Philox4x32::ctr_type words = {};
    int next = kWords; // of the words, the one to be drawn
};
