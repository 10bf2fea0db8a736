// The bytes of a fuzzer's input as a file that the readers can open.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

// Ends the run with a report when a state that must hold does not.
inline void Require(bool holds)
{
    if (!holds)
        __builtin_trap();
}

// Returns the path of the one file in memory, which now holds the input.
inline std::string InputPath(const std::uint8_t *data, std::size_t size)
{
    static const int descriptor = memfd_create("input", 0);
    Require(ftruncate(descriptor, 0) == 0 && pwrite(descriptor, data, size, 0) == static_cast<ssize_t>(size));
    return "/proc/self/fd/" + std::to_string(descriptor);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
