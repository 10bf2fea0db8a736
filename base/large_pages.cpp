#include "base/large_pages.h"

#include <cstdint>

#include <sys/mman.h>

static std::size_t WholePages(std::size_t bytes)
{
    return (bytes + kLargePage - 1) / kLargePage * kLargePage;
}

// A large page begins at a multiple of its size. Memory mapped before the first such address and after the last page
// is unmapped.
void *MapLargePages(std::size_t bytes)
{
    const std::size_t whole = WholePages(bytes);
    void *mapped =
        mmap(nullptr, whole + kLargePage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED)
        throw std::bad_alloc();
    const std::size_t before = -reinterpret_cast<std::uintptr_t>(mapped) % kLargePage;
    char *const memory = static_cast<char *>(mapped) + before;
    if (before > 0)
        munmap(mapped, before);
    munmap(memory + whole, kLargePage - before);
    // The part that does not fill a large page uses small pages; so does all of it if the system ignores the request.
    madvise(memory, bytes / kLargePage * kLargePage, MADV_HUGEPAGE);
    return memory;
}

void UnmapLargePages(void *memory, std::size_t bytes) noexcept
{
    munmap(memory, WholePages(bytes));
}
