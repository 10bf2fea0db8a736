// Compares flights with steps on an aggregate that does not grow: walkers are sent to it both ways, and where they would
// stick is recorded. Prints a line of docs/frozen-hits.csv for each setting.
//
//     frozen_hits PARTICLES HITS [SETTING...]      (all settings by default)

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "aggregate.h"
#include "growth/deferred_flows.h"
#include "growth/flights.h"
#include "growth/parallel_growth.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/state.h"
#include "growth/walker.h"
#include "search/neighbour_search.h"
#include "surface/samples.h"
#include "surface/surface.h"

// Largest difference of the mean radius that counts as none, stated beforehand.
constexpr double kLargestDifference = 0.002;
// Standard errors beyond a difference at which 5 % of results are to be expected.
constexpr double kOneSided = 1.645;
constexpr int kMovesAtOnce = 1000;
// The cylinder's scale for an aggregate whose radius is about 0.9 N^0.4; without scale its radius is 20.
constexpr double kNarrow = 0.03;

namespace
{
struct Value {
    const void *field; // of a parameter
    double value;
};

struct Setting {
    const char *name;
    std::vector<Value> values;
    bool isconfined = false; // by a cylinder somewhat narrower than the aggregate would be
};

struct Hits {
    double mean, meanerror;   // distance from the origin, in branch lengths
    double outer, outererror; // share within a branch length of the largest distance
    double seconds;
};
} // namespace

static GrowthState &g = growthstate;
static const std::vector<Setting> kSettings = {
    {"sphere", {}},
    {"axis", {{&g.sourcetype, kSourceAxisPlusX}}},
    {"plane", {{&g.sourcetype, kSourcePlaneZ}}},
    {"hemisphere", {{&g.sourcetype, kSourceHemisphereX}}},
    {"bias", {{&g.bias, 1}}},
    {"roots", {{&g.nroots, 3}, {&g.roottype, kRootRingZ}, {&g.rootrange, 20}}},
    {"cylinder", {}, true},
    {"intersection", {{&g.intersectrange, 45}}},
    {"far", {{&g.launchscale, 2}, {&g.killingscale, 20}}},
};

static void GrowAggregate(const Setting &setting, int particles)
{
    SetProgramDefaults();
    for (const char *group : {"growth", "roots", "source"})
        SetDefaults(group);
    g.bias = 0;
    for (const Value &value : setting.values)
        SetParameter(ParameterOf(value.field), value.value);
    g.walk = kWalkFlights;
    nstltri = 0;
    UpdateSTL();
    if (setting.isconfined) {
        BuildSample(2);
        const double scale = kNarrow * std::pow(particles, 0.4);
        TransformSTL({scale, scale, scale}, {0, 0, 0}, {0, 0, 0});
    }
    RestartFromRoots();
    const DeferredFlows deferredflows;
    GrowFlights({.particles = particles}, 2);
}

static Hits SendWalkers(int walk, int hits)
{
    g.walk = walk;
    PrepareSearch();
    const double start = ProcessorSeconds();
    double sum = 0, squares = 0, outer = 0;
    Walk sent;
    for (int k = 0; k < hits; k++) {
        StartWalk(ncells, ncells, AggregateReach(), nullptr, &sent);
        sent.draws = Stream(walk, k, kStreamOfProbes);
        while (!ContinueWalk(kMovesAtOnce, &sent)) {
        }
        const double r = Modulus(sent.pos);
        sum += r;
        squares += r * r;
        outer += r > g.radius - g.branchlength ? 1 : 0;
    }
    const double mean = sum / hits, share = outer / hits;
    return {mean, std::sqrt((squares / hits - mean * mean) / hits), share,
            std::sqrt(share * (1 - share) / hits), ProcessorSeconds() - start};
}

static void Compare(const Setting &setting, int particles, int hits)
{
    GrowAggregate(setting, particles);
    const Hits steps = SendWalkers(kWalkSteps, hits);
    const Hits flights = SendWalkers(kWalkFlights, hits);
    const double difference = (flights.mean - steps.mean) / steps.mean;
    const double error = std::hypot(flights.meanerror, steps.meanerror) / steps.mean;
    printf("%s,%d,%d,%.4f,%.4f,%.4f,%.4f,%.4f,%.4f,%s,%.5f,%.5f,%.5f,%.5f,%.1f,%.1f\n", setting.name, ncells,
           hits, steps.mean, steps.meanerror, flights.mean, flights.meanerror, 100 * difference, 100 * error,
           std::fabs(difference) + kOneSided * error < kLargestDifference ? "yes" : "no", steps.outer,
           steps.outererror, flights.outer, flights.outererror, steps.seconds, flights.seconds);
    fflush(stdout);
}

int main(int argc, char **argv)
{
    if (argc < 3) {
        fprintf(stderr, "usage: frozen_hits PARTICLES HITS [SETTING...]\n");
        return 2;
    }
    InitialiseGrowth();
    for (const Setting &setting : kSettings) {
        bool iswanted = argc == 3;
        for (int k = 3; k < argc; k++)
            iswanted |= setting.name == std::string(argv[k]);
        if (iswanted)
            Compare(setting, atoi(argv[1]), atoi(argv[2]));
    }
    return 0;
}
