// Allocations that fail when a test wants them to: new, malloc, calloc, realloc, fopen and fdopen as the
// program calls them. Those inside the C library and the stand-ins are left alone. For one source file of a program.

#pragma once

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "fakes/recorder.h"

static struct FailingMemory {
    bool armed = false; // calls are counted
    long first = 0;     // the call that fails, counted from 1; 0: none
    bool andallthatfollow = false;
    long calls = 0;
} failingmemory;

static bool Fails()
{
    FailingMemory &memory = failingmemory;
    if (!memory.armed || OwnAllocations::depth > 0)
        return false;
    const long call = __atomic_add_fetch(&memory.calls, 1, __ATOMIC_RELAXED); // of any thread
    const bool fails = memory.andallthatfollow ? call >= memory.first : call == memory.first;
    if (fails)
        errno = ENOMEM;
    return fails;
}

// The linker sends every call of `name` to the second function (--wrap), those of operator new as well.
#define WRAP(result, name, parameters, arguments, failure)                                                   \
    extern "C" result __real_##name parameters;                                                              \
    extern "C" result __wrap_##name parameters                                                               \
    {                                                                                                        \
        return Fails() ? failure : __real_##name arguments;                                                  \
    }
WRAP(void *, malloc, (size_t size), (size), nullptr)
WRAP(void *, calloc, (size_t number, size_t size), (number, size), nullptr)
WRAP(void *, realloc, (void *old, size_t size), (old, size), nullptr)
WRAP(void *, aligned_alloc, (size_t alignment, size_t size), (alignment, size), nullptr)
WRAP(FILE *, fopen, (const char *path, const char *mode), (path, mode), nullptr)
WRAP(FILE *, fdopen, (int file, const char *mode), (file, mode), nullptr)
