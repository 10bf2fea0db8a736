// bits [HASHES]: what runs, surfaces and files come to, as a table of hashes; compared with a table where one is given.
// The same table on every machine is the promise of docs/growth-step.md.

#include <cstdio>
#include <cstring>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "analysis/box_count.h"
#include "analysis/dimension.h"
#include "export/model.h"
#include "growth/flights.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "surface/samples.h"
#include "surface/surface.h"
#include "temporary_file.h"

namespace
{
struct Run {
    const char *name;
    int particles;
    std::vector<Setting> settings;
    const char *sample = "None";
    Vector scale = {1, 1, 1};
    Vector rotate = {0, 0, 0};
};
} // namespace

static GrowthState &g = growthstate;
static const Run kRuns[] = {
    {"steps", 3000, {}},
    {"ring of 15 roots, z", 300, {{&g.roottype, kRootRingZ}, {&g.nroots, 15}}},
    {"ring of 20 roots, x, associated",
     300,
     {{&g.roottype, kRootRingX}, {&g.nroots, 20}, {&g.association, 1}}},
    {"ring of 7 roots, y", 300, {{&g.roottype, kRootRingY}, {&g.nroots, 7}}},
    {"random roots", 300, {{&g.roottype, kRootRandomY}, {&g.nroots, 9}, {&g.bias, 1}}},
    {"plane, short branches", 300, {{&g.sourcetype, kSourcePlaneX}, {&g.branchlength, 0.3}}},
    {"double axis", 300, {{&g.sourcetype, kSourceDoubleAxisZ}}},
    {"rotation", 300, {{&g.rotation, 5}}},
    {"self-intersection", 60, {{&g.intersectrange, 0.5}}},
    {"through a turned tube", 300, {}, "Open (double) cylinder", {0.2, 0.2, 0.3}, {297, 0, 0}},
    {"surface as source", 300, {{&g.sourcetype, kSourceSurface}}, "Sphere", {3, 1, 2}, {10, 20, 30}},
    {"on a turned plane", 300, {}, "Plane", {1, 1, 0.1}, {1, 2, 3}},
    {"flights", 3000, {{&g.walk, kWalkFlights}, {&g.bias, 0}}},
    {"flights with drift", 1000, {{&g.walk, kWalkFlights}, {&g.bias, 0.5}}},
    {"flights from far away",
     1000,
     {{&g.walk, kWalkFlights}, {&g.bias, 0}, {&g.launchscale, 2}, {&g.killingscale, 20}}},
    {"flights in a wide sphere", 1000, {{&g.walk, kWalkFlights}, {&g.bias, 0}, {&g.launchscale, 2}}},
    {"flights on a turned plane", 1000, {{&g.walk, kWalkFlights}}, "Plane", {3, 3, 0.1}, {33, 44, 55}},
};

static void Print(std::ostream &table, const std::string &name, unsigned long long hash)
{
    char text[20];
    snprintf(text, sizeof text, "%016llx", hash);
    table << text << "  " << name << '\n';
}

static void Grow(const Run &run)
{
    StartWith(run.settings);
    for (const Sample &sample : Samples())
        if (strcmp(sample.name, run.sample) == 0)
            BuildSample(sample.id);
    TransformSTL(run.scale, {0, 0, 0}, run.rotate);
    while (ncells < run.particles)
        WalkUntilStick(1000);
}

static void PrintRuns(std::ostream &table)
{
    for (const Run &run : kRuns) {
        Grow(run);
        Print(table, run.name, HashParticles(run.particles));
    }
}

// All built-in surfaces, turned, with what is derived from their corners.
static void PrintSurfaces(std::ostream &table)
{
    std::string content;
    for (const Sample &sample : Samples()) {
        BuildSample(sample.id);
        TransformSTL({1, 1.1, 1.2}, {1, 2, 3}, {12, 345, 67});
        content.append(reinterpret_cast<const char *>(stltri), nstltri * sizeof *stltri);
    }
    Print(table, "built-in surfaces, turned", Hash(content.data(), content.size()));
}

// What is saved of an aggregate in a surface, statistics included.
static void PrintFiles(std::ostream &table)
{
    Grow({"", 200, {}, "Open (single) cylinder", {1, 1, 1}, {5, 6, 7}});
    CountBranches();
    StartBoxCount();
    while (!CountNextBox()) {
    }
    options.surfacemode = kSurfaceSolid;
    for (const ModelKind &kind : ModelKinds()) {
        const std::string content = Written([&](FILE *file) { WriteModel(file, kind); });
        Print(table, std::string("saved as ") + kind.name, Hash(content.data(), content.size()));
    }
    std::string curve;
    for (const Gyration &at : GyrationByNumber(10))
        curve.append(reinterpret_cast<const char *>(&at.radius), sizeof at.radius);
    const LineFit fit = FitBoxCount(1);
    curve.append(reinterpret_cast<const char *>(&fit.slope), sizeof fit.slope);
    Print(table, "dimensions", Hash(curve.data(), curve.size()));
}

int main(int argc, char **argv)
{
    std::ostringstream table;
    PrintRuns(table);
    PrintSurfaces(table);
    PrintFiles(table);
    std::cout << table.str();
    if (argc < 2)
        return 0;
    if (table.str() == ReadWhole(argv[1]))
        return 0;
    std::cerr << "not the hashes of " << argv[1] << '\n';
    return 1;
}
