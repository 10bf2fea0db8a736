#include "faults/failing_memory.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <new>

#include <sys/mman.h>

#include "fakes/recorder.h"

static bool armed = false;
static long wanted = 0;
static bool goeson = false;
static long count = 0;

void FailAllocations(long first, bool on)
{
    wanted = first;
    goeson = on;
    count = 0;
    armed = true;
}

long EndOfFailures()
{
    armed = false;
    return count;
}

static bool Fails()
{
    if (!armed || OwnAllocations::depth > 0)
        return false;
    count++;
    const bool fails = wanted > 0 && (count == wanted || (goeson && count > wanted));
    if (fails)
        errno = ENOMEM;
    return fails;
}

extern "C" {
void *__real_malloc(size_t size);
void *__real_calloc(size_t number, size_t size);
void *__real_realloc(void *old, size_t size);
void *__real_mmap(void *address, size_t length, int protection, int flags, int file, off_t offset);
FILE *__real_fopen(const char *path, const char *mode);
FILE *__real_fdopen(int file, const char *mode);

void *__wrap_malloc(size_t size)
{
    return Fails() ? nullptr : __real_malloc(size);
}
void *__wrap_calloc(size_t number, size_t size)
{
    return Fails() ? nullptr : __real_calloc(number, size);
}
void *__wrap_realloc(void *old, size_t size)
{
    return Fails() ? nullptr : __real_realloc(old, size);
}
void *__wrap_mmap(void *address, size_t length, int protection, int flags, int file, off_t offset)
{
    return Fails() ? MAP_FAILED : __real_mmap(address, length, protection, flags, file, offset);
}
FILE *__wrap_fopen(const char *path, const char *mode)
{
    return Fails() ? nullptr : __real_fopen(path, mode);
}
FILE *__wrap_fdopen(int file, const char *mode)
{
    return Fails() ? nullptr : __real_fdopen(file, mode);
}
}

void *operator new(size_t size)
{
    void *memory = Fails() ? nullptr : __real_malloc(size > 0 ? size : 1);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}
void *operator new(size_t size, std::align_val_t alignment)
{
    const auto unit = static_cast<size_t>(alignment);
    void *memory = Fails() ? nullptr : aligned_alloc(unit, (size / unit + 1) * unit);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}
void operator delete(void *memory) noexcept
{
    free(memory);
}
void operator delete(void *memory, size_t) noexcept
{
    free(memory);
}
void operator delete(void *memory, std::align_val_t) noexcept
{
    free(memory);
}
void operator delete(void *memory, size_t, std::align_val_t) noexcept
{
    free(memory);
}
