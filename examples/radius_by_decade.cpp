// Grows the default aggregate on the core library alone, and prints its radius at each decade of particles.
//
//     radius_by_decade [particles]      (10,000 by default)

#include <cstdio>
#include <cstdlib>

#include "growth/growth_step.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/state.h"

int main(int argc, char **argv)
{
    const int most = argc > 1 ? atoi(argv[1]) : 10000;
    SetProgramDefaults();
    InitialiseGrowth(); // every parameter at its default, one root at the origin
    for (int decade = 10; decade <= most && growthstate.running; decade *= 10) {
        while (ncells < decade && growthstate.running)
            IterateSystem();
        printf("%d particles, radius %g\n", ncells, growthstate.radius);
    }
    return 0;
}
