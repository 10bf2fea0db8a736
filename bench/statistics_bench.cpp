// The branch distribution, and box counts against as many idle calls that do nothing. Nothing is drawn.

#include <algorithm>
#include <cmath>

#include <benchmark/benchmark.h>

#include "aggregate.h"
#include "analysis/box_count.h"
#include "app/idle.h"
#include "base/array.h"
#include "growth/aggregate.h"
#include "growth/roots.h"
#include "growth/state.h"

// Each particle grows from one drawn among all before it.
static void CountMany(benchmark::State &state)
{
    const int count = static_cast<int>(state.range(0));
    if (!ResizeArray(&cells, static_cast<std::size_t>(count)))
        return;
    unsigned short random[3] = {1, 2, 3};
    for (int i = 0; i < count; i++)
        cells[i] = {{}, 0, i > 0 ? static_cast<int>(nrand48(random) % i) : -1, 0};
    ncells = count;
    ForgetAggregate();
    for (auto _ : state)
        CountBranches();
}

// Grows an aggregate of so many particles, and pauses.
static void Grow(int count)
{
    GrowDefault(count);
    options.framerate = 1e-9; // no redisplay
    options.surfacemode = kSurfaceOff;
}

static void CountBoxes(benchmark::State &state)
{
    Grow(static_cast<int>(state.range(0)));
    double counting = 0, idling = 0, longest = 0;
    long calls = 0;
    for (auto _ : state) {
        long counted = 0;
        const double start = Now();
        StartBoxCount();
        while (options.boxcountrequest) {
            HandleIdle();
            counted++;
        }
        const double middle = Now();
        for (long i = 0; i < counted; i++)
            HandleIdle();
        counting += middle - start;
        idling += Now() - middle;
        calls += counted;
        StartBoxCount();
        while (options.boxcountrequest) {
            const double before = Now();
            HandleIdle();
            longest = std::max(longest, Now() - before);
        }
    }
    int last = 9;
    while (stats.boxcount[last] <= 0)
        last--;
    state.counters["calls"] = static_cast<double>(calls) / static_cast<double>(state.iterations());
    state.counters["ns a call"] = 1e9 * counting / static_cast<double>(calls);
    state.counters["ratio"] = counting / idling;
    state.counters["longest ms"] = 1e3 * longest;
    state.counters["slope"] = FitBoxCount(2).slope;
    state.counters["levels"] = last + 1;
}

BENCHMARK(CountMany)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(CountBoxes)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
