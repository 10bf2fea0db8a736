// What keeping a run costs: growth through the loop of sarkelo-grow against the bare loop of steps, and aggregate files
// against a loop that writes and reads the same numbers as they are.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <vector>

#include <benchmark/benchmark.h>

#include "aggregate.h"
#include "archive/aggregate_file.h"
#include "base/array.h"
#include "batch/growth.h"
#include "growth/camera_home.h"
#include "growth/growth_step.h"
#include "growth/roots.h"

constexpr int kGrown = 100000;
constexpr int kCopies = 10;
constexpr int kRepetitions = 5;

static const std::string kFile =
    (std::filesystem::temp_directory_path() / ("sarkelo-bench" + std::string(kAggregateExtension))).string();

static double Median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size()) / 2, values.end());
    return values[values.size() / 2];
}

static void GrowKept(benchmark::State &state)
{
    std::vector<double> bare, kept;
    for (auto _ : state) {
        GrowDefault(1);
        const double start = Now();
        GrowOn(kGrown, 1L << 60);
        const double middle = Now();
        GrowDefault(1);
        growthstate.running = 1;
        Recipe stops;
        stops.particles = kGrown;
        RunRecord run;
        const double again = Now();
        Grow({stops, [](const RunRecord &now) { return WriteAggregate(kFile, now); }, 10, true}, &run);
        kept.push_back(Now() - again);
        bare.push_back(middle - start);
    }
    state.counters["s"] = Median(kept);
    state.counters["ratio"] = Median(kept) / Median(bare);
}

// A million particles: ten aggregates beside each other, whose digits are as random as those of one.
static RunRecord MakeMillion()
{
    CameraHome();
    GrowDefault(kGrown);
    ResizeArray(&cells, std::size_t{kGrown} * kCopies);
    for (int i = kGrown; i < kGrown * kCopies; i++) {
        cells[i] = cells[i - kGrown];
        cells[i].p = cells[i].p + Vector{1.1, 0.3, -0.7};
        cells[i].parent = cells[i].parent < 0 ? 0 : cells[i].parent + kGrown;
    }
    ncells = kGrown * kCopies;
    ForgetAggregate();
    RunRecord run;
    run.view = camera;
    return run;
}

static void WriteFile(benchmark::State &state)
{
    const RunRecord run = MakeMillion();
    std::vector<double> file, plain;
    for (auto _ : state) {
        const double start = Now();
        WriteAggregate(kFile, run);
        const double middle = Now();
        FILE *out = fopen("/dev/null", "w");
        for (int i = 0; i < ncells; i++)
            fwrite(&cells[i], 36, 1, out);
        fclose(out);
        file.push_back(middle - start);
        plain.push_back(Now() - middle);
    }
    state.counters["ms"] = 1e3 * Median(file);
    state.counters["bytes a particle"] = static_cast<double>(std::filesystem::file_size(kFile)) / ncells;
    state.counters["ratio"] = Median(file) / Median(plain);
}

static void ReadFile(benchmark::State &state)
{
    WriteAggregate(kFile, MakeMillion());
    std::vector<double> file, plain;
    for (auto _ : state) {
        const double start = Now();
        StoredAggregate stored;
        ReadAggregate(kFile, &stored);
        const double middle = Now();
        std::vector<Particle> copy(cells, cells + ncells);
        benchmark::DoNotOptimize(copy.data());
        file.push_back(middle - start);
        plain.push_back(Now() - middle);
    }
    state.counters["ms"] = 1e3 * Median(file);
    state.counters["ratio"] = Median(file) / Median(plain);
    std::filesystem::remove(kFile);
}

BENCHMARK(GrowKept)->Iterations(kRepetitions)->Unit(benchmark::kMillisecond);
BENCHMARK(WriteFile)->Iterations(kRepetitions)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadFile)->Iterations(kRepetitions)->Unit(benchmark::kMillisecond);
