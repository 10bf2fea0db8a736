// Growth against its floor and its chain, side by side: after every batch of growth steps, as many of each.

#include <cstdio>
#include <string>

#include <benchmark/benchmark.h>

#include "aggregate.h"
#include "floor.h"
#include "growth/growth_step.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/state.h"
#include "spherical_surface.h"
#include "surface/surface.h"

namespace
{
struct Setting {
    const char *name;
    int source = kSourceSphere;
    int nroots = 1;
    int roottype = kRootOrigin;
    int association = 0;
    double rotation = 0;
    double stickiness = 100;
    double branchlength = 1;
    int latitudes = 0; // a spherical surface of 4 n (n - 1) faces
    double surfaceradius = 0;
};
} // namespace

static void Start(const Setting &setting)
{
    SetProgramDefaults();
    InitialiseGrowth();
    growthstate.sourcetype = setting.source;
    growthstate.nroots = setting.nroots;
    growthstate.roottype = setting.roottype;
    growthstate.association = setting.association;
    growthstate.rotation = setting.rotation;
    growthstate.stickiness = setting.stickiness;
    growthstate.branchlength = setting.branchlength;
    nstltri = 0;
    UpdateSTL();
    if (setting.latitudes > 0)
        SetSphere(setting.surfaceradius, setting.latitudes);
    InitialiseGrowth();
    ResetSeeds();
}

// From `from` to `to` particles in a setting.
static void BM_Growth(benchmark::State &state, Setting setting, int from, int to)
{
    for (auto _ : state) {
        Start(setting);
        GrowOn(from, 1L << 60);
        double growth = 0;
        double floor = 0, chain = 0;
        long steps = 0;
        while (ncells < to) {
            const double start = Now();
            const long taken = GrowOn(to, 1000000);
            growth += Now() - start;
            floor += TimeFloor(taken);
            chain += TimeChain(taken);
            steps += taken;
        }
        state.SetIterationTime(growth);
        state.counters["steps"] = static_cast<double>(steps);
        state.counters["ns_per_step"] = 1e9 * growth / static_cast<double>(steps);
        state.counters["floor_ns"] = 1e9 * floor / static_cast<double>(steps);
        state.counters["ratio"] = growth / floor;
        state.counters["to_chain"] = growth / chain;
    }
}

// Steps with a surface against steps without one, to 20,000 particles each, in turns of a million steps.
static void BM_Surface(benchmark::State &state, Setting with)
{
    const Setting without = {.name = ""};
    for (auto _ : state) {
        double seconds[2] = {0, 0};
        double steps[2] = {0, 0};
        for (const bool surface : {false, true}) {
            Start(surface ? with : without);
            const double start = ProcessorSeconds();
            steps[surface] = static_cast<double>(GrowOn(20000, 100000000));
            seconds[surface] = ProcessorSeconds() - start;
        }
        state.SetIterationTime(seconds[1]);
        state.counters["faces"] = nstltri;
        state.counters["particles"] = ncells;
        state.counters["ns_per_step"] = 1e9 * seconds[1] / steps[1];
        state.counters["without_ns"] = 1e9 * seconds[0] / steps[0];
        state.counters["ratio"] = (seconds[1] / steps[1]) / (seconds[0] / steps[0]);
    }
}

// The idle call (100 steps) after a change at 100,000 particles, against one before it.
static void BM_ChangeBranchLength(benchmark::State &state)
{
    Start({.name = ""});
    GrowOn(100000, 1L << 60);
    for (auto _ : state) {
        growthstate.branchlength = growthstate.branchlength == 1 ? 0.9 : 1;
        GrowOn(1000000, 100);
    }
}

static void BM_Restart(benchmark::State &state)
{
    Start({.name = ""});
    for (auto _ : state) {
        InitialiseGrowth();
        GrowOn(1000, 100);
    }
}

static void BM_ReadRoots(benchmark::State &state)
{
    Start({.name = ""});
    const std::string path = "/tmp/sarkelo-bench-roots.txt";
    FILE *file = fopen(path.c_str(), "w");
    for (int i = 0; i < 10000; i++)
        fprintf(file, "%d %d %d\n", i % 22, i / 22 % 22, i / 484);
    fclose(file);
    for (auto _ : state) {
        ReadSeedFile(path.c_str());
        GrowOn(1000000, 100);
    }
    remove(path.c_str());
}

static const Setting kSettings[] = {
    {.name = "three_associated_roots", .nroots = 3, .roottype = kRootRingZ, .association = 1},
    {.name = "rotation_5", .rotation = 5},
    {.name = "stickiness_5", .stickiness = 5},
    {.name = "branch_0.05", .branchlength = 0.05},
    {.name = "branch_2.5", .branchlength = 2.5},
    {.name = "plane_x", .source = kSourcePlaneX},
    {.name = "stl_surface", .source = kSourceSurface, .latitudes = 36, .surfaceradius = 200},
};

static const bool registered = [] {
    const auto setup = [](benchmark::internal::Benchmark *b) {
        b->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);
    };
    const Setting defaults = {.name = "default"};
    setup(benchmark::RegisterBenchmark("default/1000_to_10000", BM_Growth, defaults, 1000, 10000));
    setup(benchmark::RegisterBenchmark("default/10000_to_100000", BM_Growth, defaults, 10000, 100000));
    for (const Setting &setting : kSettings)
        setup(benchmark::RegisterBenchmark((std::string(setting.name) + "/to_20000").c_str(), BM_Growth,
                                           setting, 1, 20000));
    const Setting sample = {.name = "", .latitudes = 36, .surfaceradius = 20};
    const Setting million = {.name = "", .latitudes = 500, .surfaceradius = 40};
    setup(benchmark::RegisterBenchmark("surface/sphere_of_5040_faces", BM_Surface, sample));
    setup(benchmark::RegisterBenchmark("surface/sphere_of_a_million_faces", BM_Surface, million));
    benchmark::RegisterBenchmark("change_branch_length", BM_ChangeBranchLength)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("restart", BM_Restart)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("read_10000_roots", BM_ReadRoots)->Unit(benchmark::kMillisecond);
    return true;
}();
