// A vector that grows without copying all its elements.

#pragma once

#include <bit>
#include <cstddef>
#include <utility>
#include <vector>

#include "base/large_pages.h"

// Elements are stored in chunks the size of a large page: growth copies at most the first chunk, and never needs
// memory for all elements twice.
template<typename T>
class ChunkedVector
{
public:
    [[nodiscard]] std::size_t size() const { return count; }

    T &operator[](std::size_t i) { return chunks[i / kChunk][i % kChunk]; }
    const T &operator[](std::size_t i) const { return chunks[i / kChunk][i % kChunk]; }

    void push_back(const T &element)
    {
        if (count == chunks.size() * kChunk) {
            LargeVector<T> chunk;
            if (count > 0)
                chunk.reserve(kChunk);
            chunks.push_back(std::move(chunk));
        }
        chunks.back().push_back(element);
        count++;
    }

private:
    static constexpr std::size_t kChunk = std::bit_floor(kLargePage / sizeof(T));

    std::vector<LargeVector<T>> chunks; // all full except the last
    std::size_t count = 0;
};
