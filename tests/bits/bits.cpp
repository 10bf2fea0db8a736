// Prints a table of hashes of runs, surfaces and files. It is the same on every machine, as docs/growth-step.md promises,
// and on any number of threads.
//
//     bits [THREADS]      (of flights, 1 by default)

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "analysis/box_count.h"
#include "analysis/dimension.h"
#include "export/model.h"
#include "growth/growth_step.h"
#include "growth/parallel_growth.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "surface/samples.h"
#include "surface/surface.h"
#include "temporary_file.h"

struct Run {
    const char *name;
    int particles;
    std::vector<Setting> settings;
    int sample = 0;
    Vector scale = {1, 1, 1}, rotate = {0, 0, 0};
};

static GrowthState &g = growthstate;
static const Run kRuns[] = {
    {"steps", 3000, {}},
    {"ring of 15 roots, z", 300, {{&g.roottype, kRootRingZ}, {&g.nroots, 15}}},
    {"ring of 20, x, associated", 300, {{&g.roottype, kRootRingX}, {&g.nroots, 20}, {&g.association, 1}}},
    {"ring of 7 roots, y", 300, {{&g.roottype, kRootRingY}, {&g.nroots, 7}}},
    {"random roots", 300, {{&g.roottype, kRootRandomY}, {&g.nroots, 9}, {&g.bias, 1}}},
    {"plane, short branches", 300, {{&g.sourcetype, kSourcePlaneX}, {&g.branchlength, 0.3}}},
    {"double axis", 300, {{&g.sourcetype, kSourceDoubleAxisZ}}},
    {"rotation", 300, {{&g.rotation, 5}}},
    {"self-intersection", 60, {{&g.intersectrange, 0.5}}},
    {"through a turned tube", 300, {}, 3, {0.2, 0.2, 0.3}, {297, 0, 0}},
    {"surface as source", 300, {{&g.sourcetype, kSourceSurface}}, 21, {3, 1, 2}, {10, 20, 30}},
    {"on a turned plane", 300, {}, 31, {1, 1, 0.1}, {1, 2, 3}},
    {"flights", 3000, {{&g.walk, kWalkFlights}, {&g.bias, 0}}},
    {"flights with drift", 1000, {{&g.walk, kWalkFlights}, {&g.bias, 0.5}}},
    {"flights from far away",
     1000,
     {{&g.walk, kWalkFlights}, {&g.bias, 0}, {&g.launchscale, 2}, {&g.killingscale, 20}}},
    {"flights in a wide sphere", 1000, {{&g.walk, kWalkFlights}, {&g.bias, 0}, {&g.launchscale, 2}}},
    {"flights from infinity",
     6000,
     {{&g.walk, kWalkFlights}, {&g.bias, 0}, {&g.sourcetype, kSourceInfinity}}},
    {"flights that seldom stick", 1000, {{&g.walk, kWalkFlights}, {&g.stickiness, 5}}},
    {"flights to associated roots",
     300,
     {{&g.walk, kWalkFlights}, {&g.roottype, kRootRingX}, {&g.nroots, 3}, {&g.association, 1}}},
    {"flights with short branches", 300, {{&g.walk, kWalkFlights}, {&g.bias, 0}, {&g.branchlength, 0.3}}},
    {"flights through a turned tube", 300, {{&g.walk, kWalkFlights}}, 3, {0.2, 0.2, 0.3}, {297, 0, 0}},
    {"flights on a turned plane", 1000, {{&g.walk, kWalkFlights}}, 31, {3, 3, 0.1}, {33, 44, 55}},
};

static void Print(const char *name, unsigned long long hash)
{
    printf("%016llx  %s\n", hash, name);
}

static int threads = 1;

static void Grow(const Run &run)
{
    StartWith(run.settings);
    if (run.sample != 0)
        BuildSample(run.sample);
    TransformSTL(run.scale, {0, 0, 0}, run.rotate);
    if (growthstate.walk == kWalkFlights)
        GrowFlights({.particles = run.particles}, threads);
    while (ncells < run.particles)
        IterateUntilStick(1000);
}

static void PrintFiles()
{
    Grow({"", 200, {}, 2, {1, 1, 1}, {5, 6, 7}});
    CountBranches();
    StartBoxCount();
    while (!CountNextBox()) {
    }
    options.surfacemode = kSurfaceSolid;
    for (const ModelKind &kind : ModelKinds()) {
        const std::string content = Written([&](FILE *file) { WriteModel(file, kind); });
        Print((std::string("saved as ") + kind.name).c_str(), Hash(content.data(), content.size()));
    }
    unsigned long long hash = Hash(nullptr, 0);
    for (const Gyration &at : GyrationByNumber(10))
        hash = Hash(&at.radius, sizeof at.radius, hash);
    const LineFit fit = FitBoxCount(1);
    Print("dimensions", Hash(&fit.slope, sizeof fit.slope, hash));
}

int main(int argc, char **argv)
{
    if (argc > 1)
        threads = atoi(argv[1]);
    fewparticles = 5;
    for (const Run &run : kRuns) {
        Grow(run);
        Print(run.name, HashParticles(run.particles));
    }
    unsigned long long surfaces = Hash(nullptr, 0);
    for (const Sample &sample : Samples()) {
        BuildSample(sample.id);
        TransformSTL({1, 1.1, 1.2}, {1, 2, 3}, {12, 345, 67});
        surfaces = Hash(stltri, nstltri * sizeof *stltri, surfaces);
    }
    Print("built-in surfaces, turned", surfaces);
    PrintFiles();
}
