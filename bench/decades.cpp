// Grows the default aggregate and prints, at each decade of particles, time, steps, memory and radius.
//
//     decades [particles]      (1,000,000 by default, which takes minutes)

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include <sys/resource.h>

#include "aggregate.h"
#include "growth/roots.h"
#include "growth/state.h"

static double PeakBytes()
{
    rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    return 1024.0 * static_cast<double>(usage.ru_maxrss);
}

int main(int argc, char **argv)
{
    const int most = argc > 1 ? atoi(argv[1]) : 1000000;
    SetProgramDefaults();
    InitialiseGrowth();
    const double empty = PeakBytes();
    const double start = Now();
    long steps = 0;
    double radius = 0;
    printf("%10s %10s %14s %9s %14s %10s %8s\n", "particles", "seconds", "steps", "ns/step", "peak bytes/p",
           "radius", "slope");
    for (int decade = 1000; decade <= most; decade *= 10) {
        steps += GrowOn(decade, 1L << 60);
        const double seconds = Now() - start;
        printf("%10d %10.2f %14ld %9.1f %14.1f %10.2f", ncells, seconds, steps,
               1e9 * seconds / static_cast<double>(steps), (PeakBytes() - empty) / ncells,
               growthstate.radius);
        if (radius > 0)
            printf(" %8.3f", 1 / std::log10(growthstate.radius / radius));
        printf("\n");
        fflush(stdout);
        radius = growthstate.radius;
    }
    return 0;
}
