// What changing the constraint surface costs, by its number of faces: linear, so the time "a face" stays.

#include <cmath>

#include <benchmark/benchmark.h>

#include "growth/parameters.h"
#include "growth/state.h"
#include "spherical_surface.h"
#include "surface/surface.h"

static void PrepareSurface(const benchmark::State &state)
{
    SetProgramDefaults();
    SetSphere(100, static_cast<int>(std::lround(std::sqrt(static_cast<double>(state.range(0)) / 4))));
}

static void ReportFaces(benchmark::State &state)
{
    const double faces = static_cast<double>(state.iterations()) * nstltri;
    state.counters["a face"] =
        benchmark::Counter(faces, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.counters["faces"] = nstltri;
}

static void UpdateFaces(benchmark::State &state)
{
    PrepareSurface(state);
    for (auto _ : state)
        UpdateSTL();
    ReportFaces(state);
}

// As the transform panel's button does it.
static void ApplyTransform(benchmark::State &state)
{
    PrepareSurface(state);
    for (auto _ : state) {
        TransformSTL({1, 1, 1}, {0, 0, 0}, {10, 20, 30});
        UpdateSTL();
    }
    ReportFaces(state);
}

BENCHMARK(UpdateFaces)->RangeMultiplier(10)->Range(10000, 1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(ApplyTransform)->RangeMultiplier(10)->Range(10000, 1000000)->Unit(benchmark::kMillisecond);
