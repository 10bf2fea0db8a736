#include "aggregate.h"

#include <chrono>
#include <ctime>

#include "growth/deferred_flows.h"
#include "growth/growth_step.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/state.h"

constexpr int kStepsPerCall = 100;

double Now()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double ProcessorSeconds()
{
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

void GrowDefault(int particles)
{
    SetProgramDefaults();
    growthstate.nroots = 1;
    InitialiseGrowth();
    ResetSeeds();
    GrowOn(particles, 1L << 60);
    growthstate.running = 0;
}

long GrowOn(int particles, long most)
{
    const DeferredFlows heldflows;
    long steps = 0;
    while (ncells < particles && steps < most) {
        for (int left = kStepsPerCall; left > 0;)
            left -= IterateUntilStick(left);
        steps += kStepsPerCall;
    }
    return steps;
}
