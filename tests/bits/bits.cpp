// bits [HASHES]: what runs, surfaces and files come to, as a table of hashes; compared with a table where one is given.
// The same table on every machine is the promise of docs/growth-step.md.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "analysis/box_count.h"
#include "analysis/dimension.h"
#include "export/model.h"
#include "growth/flights.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "surface/samples.h"
#include "surface/surface.h"

namespace
{
struct Run {
    const char *name;
    int source = kSourceSphere;
    int roottype = kRootOrigin;
    int nroots = 1;
    const char *sample = "None";
    Vector scale = {1, 1, 1};
    Vector rotate = {0, 0, 0};
    double rotation = 0;
    double bias = 0.1;
    double branchlength = 1;
    double intersectrange = 0;
    int association = 0;
    int walk = kWalkSteps;
    double launchscale = 1;
    double killingscale = 1;
    int particles = 300;
};
} // namespace

static const Run kRuns[] = {
    {.name = "steps", .particles = 3000},
    {.name = "ring of 15 roots, z", .roottype = kRootRingZ, .nroots = 15},
    {.name = "ring of 20 roots, x, associated", .roottype = kRootRingX, .nroots = 20, .association = 1},
    {.name = "ring of 7 roots, y", .roottype = kRootRingY, .nroots = 7},
    {.name = "random roots", .roottype = kRootRandomY, .nroots = 9, .bias = 1},
    {.name = "plane, short branches", .source = kSourcePlaneX, .branchlength = 0.3},
    {.name = "double axis", .source = kSourceDoubleAxisZ},
    {.name = "rotation", .rotation = 5},
    {.name = "self-intersection", .intersectrange = 0.5, .particles = 60},
    {.name = "through a turned tube",
     .sample = "Open (double) cylinder",
     .scale = {0.2, 0.2, 0.3},
     .rotate = {297, 0, 0}},
    {.name = "surface as source",
     .source = kSourceSurface,
     .sample = "Sphere",
     .scale = {3, 1, 2},
     .rotate = {10, 20, 30}},
    {.name = "on a turned plane", .sample = "Plane", .scale = {1, 1, 0.1}, .rotate = {1, 2, 3}},
    {.name = "flights", .bias = 0, .walk = kWalkFlights, .particles = 3000},
    {.name = "flights with drift", .bias = 0.5, .walk = kWalkFlights, .particles = 1000},
    {.name = "flights from far away",
     .bias = 0,
     .walk = kWalkFlights,
     .launchscale = 2,
     .killingscale = 20,
     .particles = 1000},
    {.name = "flights in a wide sphere",
     .bias = 0,
     .walk = kWalkFlights,
     .launchscale = 2,
     .particles = 1000},
    {.name = "flights on a turned plane",
     .sample = "Plane",
     .scale = {3, 3, 0.1},
     .rotate = {33, 44, 55},
     .walk = kWalkFlights,
     .particles = 1000},
};

static unsigned long long Hash(const void *data, std::size_t size)
{
    unsigned long long hash = 14695981039346656037ULL;
    for (std::size_t i = 0; i < size; i++)
        hash = (hash ^ static_cast<const unsigned char *>(data)[i]) * 1099511628211ULL;
    return hash;
}

static void Print(std::ostream &table, const std::string &name, unsigned long long hash)
{
    char text[20];
    snprintf(text, sizeof text, "%016llx", hash);
    table << text << "  " << name << '\n';
}

static void Grow(const Run &run)
{
    StartAfresh();
    growthstate.sourcetype = run.source;
    growthstate.rotation = run.rotation;
    growthstate.bias = run.bias;
    growthstate.branchlength = run.branchlength;
    growthstate.intersectrange = run.intersectrange;
    growthstate.association = run.association;
    growthstate.walk = run.walk;
    growthstate.launchscale = run.launchscale;
    growthstate.killingscale = run.killingscale;
    growthstate.roottype = run.roottype;
    growthstate.nroots = run.nroots;
    for (const Sample &sample : Samples())
        if (strcmp(sample.name, run.sample) == 0)
            BuildSample(sample.id);
    TransformSTL(run.scale, {0, 0, 0}, run.rotate);
    RestartFromRoots();
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
    Grow({.name = "", .sample = "Open (single) cylinder", .rotate = {5, 6, 7}, .particles = 200});
    CountBranches();
    StartBoxCount();
    while (!CountNextBox()) {
    }
    options.surfacemode = kSurfaceSolid;
    for (const ModelKind &kind : ModelKinds()) {
        char *content = nullptr;
        std::size_t size = 0;
        FILE *file = open_memstream(&content, &size);
        const int written = WriteModel(file, kind);
        fclose(file);
        Print(table, std::string("saved as ") + kind.name, written ? Hash(content, size) : 0);
        free(content);
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
    std::ifstream file(argv[1]);
    std::ostringstream expected;
    expected << file.rdbuf();
    if (table.str() == expected.str())
        return 0;
    std::cerr << "not the hashes of " << argv[1] << '\n';
    return 1;
}
