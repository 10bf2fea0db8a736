// Sends walkers to an aggregate that does not grow, and prints where they would stick: by steps or by flights.
//
//     frozen_hits WALK HITS [SETTING]     WALK: steps, flights or infinity; SETTING: axis, plane, ...

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "growth/deferred_flows.h"
#include "growth/flights.h"
#include "growth/growth_step.h"
#include "growth/parallel_growth.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/state.h"
#include "growth/walker.h"
#include "search/neighbour_search.h"

int main(int argc, char **argv)
{
    const std::string way = argv[1], setting = argc > 3 ? argv[3] : "";
    const int hits = atoi(argv[2]);
    const int particles = argc > 4 ? atoi(argv[4]) : 20000;
    SetProgramDefaults();
    InitialiseGrowth();
    growthstate.bias = 0;
    if (argc > 6)
        growthstate.seed = atoi(argv[6]);
    if (setting == "axis")
        growthstate.sourcetype = kSourceAxisPlusX;
    InitialiseGrowth();
    {
        const DeferredFlows deferredflows;
        while (ncells < particles)
            IterateUntilStick(1000);
    }
    if (way != "steps")
        growthstate.walk = kWalkFlights;
    if (way == "infinity")
        growthstate.sourcetype = kSourceInfinity;
    PrepareSearch();
    double sum = 0, squares = 0, outer = 0, launches = 0;
    Walk walk;
    for (int k = 0; k < hits; k++) {
        StartWalk(ncells, ncells, AggregateReach(), nullptr, &walk);
        walk.draws = Stream(argc > 5 ? atoi(argv[5]) : 77, k, static_cast<StreamPurpose>(1));
        while (!ContinueWalk(1000, &walk)) {
        }
        const double r = Modulus(walk.pos);
        sum += r;
        squares += r * r;
        outer += r > growthstate.radius - growthstate.branchlength;
        launches += walk.launches;
    }
    const double mean = sum / hits;
    printf("%s %s: mean %.4f +- %.4f, outermost %.4f +- %.4f, launches %.2f, radius %.2f\n", way.c_str(),
           setting.c_str(), mean, std::sqrt((squares / hits - mean * mean) / hits), outer / hits,
           std::sqrt(outer) / hits, launches / hits, growthstate.radius);
}
