// Growth without a window: the loop of steps, with checkpoints, until a stop.

#pragma once

#include <functional>

#include "archive/aggregate_file.h"
#include "recipe/recipe.h"

enum GrowthEnd {
    kStopReached,
    kSignalled, // NotedEndSignal is the signal
    kStalled,   // no particle arrives any more
    kOutOfMemory
};

// Steps without a particle after which growth counts as stalled.
constexpr int kStallSteps = 1000000000;

struct GrowthPlan {
    const Recipe &stops;
    std::function<Fault(const RunRecord &)> checkpoint; // writes one
    double checkpointminutes;                           // 0: none
    bool quiet;
    int stallsteps = kStallSteps;
};

// Grows the run of the global records, counting its seconds.
GrowthEnd Grow(const GrowthPlan &plan, RunRecord *run);
