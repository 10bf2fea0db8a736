#include "base/processors.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <sched.h>

// Processors' time that the control group may use, rounded up; `otherwise` without a limit.
static int ProcessorsOfGroup(int otherwise);

int AvailableProcessors()
{
    cpu_set_t allowed;
    const int count = sched_getaffinity(0, sizeof allowed, &allowed) == 0 ? CPU_COUNT(&allowed) : 1;
    return std::max(1, std::min(count, ProcessorsOfGroup(count)));
}

static int ProcessorsOfGroup(int otherwise)
{
    FILE *file = fopen("/sys/fs/cgroup/cpu.max", "r"); // "max 100000", or microseconds in each period
    if (file == nullptr)
        return otherwise;
    double time = 0, period = 0;
    const bool islimited = fscanf(file, "%lf %lf", &time, &period) == 2 && period > 0;
    fclose(file);
    return islimited ? static_cast<int>(std::ceil(std::min<double>(time / period, otherwise))) : otherwise;
}
