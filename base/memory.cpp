#include "base/memory.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

// The first number that `format` reads from a file; SIZE_MAX if the file is missing or no line matches.
static std::size_t ReadNumber(const char *path, const char *format);

std::size_t AvailableMemory()
{
    const std::size_t kibibytes = ReadNumber("/proc/meminfo", " MemAvailable: %zu");
    const std::size_t machine = kibibytes < SIZE_MAX / 1024 ? kibibytes * 1024 : SIZE_MAX;
    const std::size_t limit = ReadNumber("/sys/fs/cgroup/memory.max", "%zu");
    if (limit == SIZE_MAX)
        return machine;
    const std::size_t used = ReadNumber("/sys/fs/cgroup/memory.current", "%zu");
    return std::min(machine, limit > used ? limit - used : 0);
}

static std::size_t ReadNumber(const char *path, const char *format)
{
    std::size_t number = SIZE_MAX;
    FILE *file = fopen(path, "r");
    if (file == nullptr)
        return number;
    char line[256];
    while (number == SIZE_MAX && fgets(line, sizeof line, file) != nullptr)
        if (sscanf(line, format, &number) != 1)
            number = SIZE_MAX;
    fclose(file);
    return number;
}
