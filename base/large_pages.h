// Vectors for large tables that are read in random order.

#pragma once

#include <cstddef>
#include <limits>
#include <new>
#include <vector>

constexpr std::size_t kLargePage = std::size_t{1} << 21;

// Fresh memory in large pages as far as the system provides them, the rest in small pages. A processor caches the
// addresses of only some thousand pages: in a table of many megabytes of small pages, nearly every access waits for
// memory twice. Throws std::bad_alloc.
void *MapLargePages(std::size_t bytes);
void UnmapLargePages(void *memory, std::size_t bytes) noexcept;

// Allocates less than a large page with the ordinary operator new.
template<typename T>
class LargePageAllocator
{
public:
    using value_type = T;

    LargePageAllocator() = default;
    template<typename U>
    explicit LargePageAllocator(const LargePageAllocator<U> & /*other*/)
    {
    }

    [[nodiscard]] T *allocate(std::size_t count)
    {
        if (count > std::numeric_limits<std::size_t>::max() / 2 / sizeof(T))
            throw std::bad_array_new_length();
        const std::size_t bytes = count * sizeof(T);
        return static_cast<T *>(bytes < kLargePage ? ::operator new(bytes, kAlignment)
                                                   : MapLargePages(bytes));
    }

    void deallocate(T *memory, std::size_t count) noexcept
    {
        if (count * sizeof(T) < kLargePage)
            ::operator delete(memory, kAlignment);
        else
            UnmapLargePages(memory, count * sizeof(T));
    }

private:
    static constexpr std::align_val_t kAlignment{alignof(T)};
};

template<typename T, typename U>
bool operator==(const LargePageAllocator<T> & /*a*/, const LargePageAllocator<U> & /*b*/)
{
    return true;
}

template<typename T>
using LargeVector = std::vector<T, LargePageAllocator<T>>;
