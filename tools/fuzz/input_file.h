// The bytes of a fuzzer's input as a file that the readers can open.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

class InputFile
{
public:
    InputFile(const std::uint8_t *data, std::size_t size) : descriptor(memfd_create("input", 0))
    {
        if (descriptor < 0 || write(descriptor, data, size) != static_cast<ssize_t>(size))
            __builtin_trap();
    }
    ~InputFile() { close(descriptor); }
    InputFile(const InputFile &) = delete;
    InputFile &operator=(const InputFile &) = delete;

    std::string Path() const { return "/proc/self/fd/" + std::to_string(descriptor); }

private:
    int descriptor;
};

// Ends the run with a report when a state that must hold does not.
inline void Require(bool holds)
{
    if (!holds)
        __builtin_trap();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
