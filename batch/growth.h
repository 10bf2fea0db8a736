// Growth without a window: the loop over steps, with checkpoints, until a stop of the recipe is reached

#pragma once

#include <functional>

#include "archive/aggregate_file.h"
#include "recipe/recipe.h"

enum GrowthEnd {
    kStopReached,
    kSignalled, // by the signal NotedEndSignal()
    kStalled,   // no particle has stuck for GrowthPlan::stallsteps steps
    kOutOfMemory
};

// Steps after which growth counts as stalled if no particle has stuck
constexpr int kStallSteps = 1000000000;

struct GrowthPlan {
    const Recipe &stops;
    std::function<Fault(const RunRecord &)> checkpoint; // writes a checkpoint
    double checkpointminutes;                           // between checkpoints; 0: no checkpoints
    bool quiet;
    int stallsteps = kStallSteps;
    int threads = 1; // for flights
};

// Grows the run in the global records, and adds its growth time to run->seconds.
GrowthEnd Grow(const GrowthPlan &plan, RunRecord *run);
