#include "faults/failing_memory.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <new>

#include "fakes/recorder.h"

FailingMemory failingmemory;

static bool Fails()
{
    FailingMemory &memory = failingmemory;
    if (!memory.armed || OwnAllocations::depth > 0)
        return false;
    memory.calls++;
    const bool now = memory.calls == memory.first;
    const bool later = memory.andallthatfollow && memory.calls > memory.first;
    if (now || later)
        errno = ENOMEM;
    return now || later;
}

// The linker sends every call of `name` to the second function (--wrap).
#define WRAP(result, name, parameters, arguments, failure)                                                   \
    extern "C" result __real_##name parameters;                                                              \
    extern "C" result __wrap_##name parameters                                                               \
    {                                                                                                        \
        return Fails() ? failure : __real_##name arguments;                                                  \
    }
WRAP(void *, malloc, (size_t size), (size), nullptr)
WRAP(void *, calloc, (size_t number, size_t size), (number, size), nullptr)
WRAP(void *, realloc, (void *old, size_t size), (old, size), nullptr)
WRAP(FILE *, fopen, (const char *path, const char *mode), (path, mode), nullptr)
WRAP(FILE *, fdopen, (int file, const char *mode), (file, mode), nullptr)

void *operator new(size_t size, std::align_val_t alignment)
{
    const auto unit = static_cast<size_t>(alignment);
    void *memory = Fails() ? nullptr : aligned_alloc(unit, (size / unit + 1) * unit);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}
void *operator new(size_t size)
{
    return operator new(size, std::align_val_t(sizeof(std::max_align_t)));
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
