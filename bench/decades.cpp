// Grows the default aggregate and prints, at each decade of particles, time, steps, memory and radius; and the time of a
// step of the chain, which is measured in turns with growth.
//
//     decades [particles [threads [infinity]]]      (1,000,000 by default; steps without threads; flights have no bias)

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include <sys/resource.h>

#include "aggregate.h"
#include "floor.h"
#include "growth/deferred_flows.h"
#include "growth/parallel_growth.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/state.h"

// Steps, or seconds of flights, between two measurements of the chain, and the steps of each.
constexpr long kTurn = 10000000;
constexpr double kTurnSeconds = 0.5;
constexpr long kChainSteps = 500000;

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
    const int threads = argc > 2 ? atoi(argv[2]) : 0;
    if (threads > 0) {
        growthstate.walk = kWalkFlights;
        growthstate.bias = 0;
    }
    if (argc > 3)
        growthstate.sourcetype = kSourceInfinity;
    const DeferredFlows deferredflows;
    const double empty = PeakBytes();
    double seconds = 0, chain = 0, radius = 0;
    long chainsteps = 0, moves = 0;
    int before = 0;
    printf("%10s %10s %14s %9s %9s %9s %14s %10s %8s\n", "particles", "seconds", "steps", "ns/step",
           "chain ns", "steps/p", "peak bytes/p", "radius", "slope");
    for (int decade = 1000; decade <= most; decade *= 10) {
        const long movesbefore = moves;
        const double secondsbefore = seconds;
        while (ncells < decade) {
            const double start = Now();
            if (threads > 0) {
                const long stepsbefore = growthstate.steptotal;
                GrowFlights({.particles = decade, .seconds = kTurnSeconds}, threads);
                moves += growthstate.steptotal - stepsbefore;
            } else {
                moves += GrowOn(decade, kTurn);
            }
            if (ncells == decade)
                SettleFlows();
            seconds += Now() - start;
            chain += TimeChain(kChainSteps);
            chainsteps += kChainSteps;
        }
        printf("%10d %10.2f %14ld %9.1f %9.2f %9.1f %14.1f %10.2f", ncells, seconds, moves,
               1e9 * (seconds - secondsbefore) / static_cast<double>(moves - movesbefore),
               1e9 * chain / static_cast<double>(chainsteps),
               static_cast<double>(moves - movesbefore) / (ncells - before), (PeakBytes() - empty) / ncells,
               growthstate.radius);
        if (radius > 0)
            printf(" %8.3f", 1 / std::log10(growthstate.radius / radius));
        printf("\n");
        fflush(stdout);
        radius = growthstate.radius;
        before = ncells;
    }
    return 0;
}
