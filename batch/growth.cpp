#include "batch/growth.h"

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstdio>

#include "base/end_signals.h"
#include "batch/progress.h"
#include "growth/deferred_flows.h"
#include "growth/flights.h"

// Steps between two readings of the clock: a fraction of a millisecond
constexpr long kBurst = 8192;
// Most minutes until a checkpoint that could not be written is tried again
constexpr double kRetryMinutes = 1;

static double Now();
static void GrowBurst(long steps, int particles);

GrowthEnd Grow(const GrowthPlan &plan, RunRecord *run)
{
    const Recipe &stops = plan.stops;
    const int particles = stops.particles > 0 ? static_cast<int>(stops.particles) : INT_MAX;
    const long steps = stops.steps > 0 ? stops.steps : LONG_MAX;
    const double start = Now();
    const double before = run->seconds;
    double checkpointdue = 60 * plan.checkpointminutes;
    Progress progress(stops, plan.quiet);
    GrowthEnd end = kStopReached;
    const DeferredFlows deferredflows;
    while (ncells < particles && growthstate.steptotal < steps) {
        const double elapsed = Now() - start;
        run->seconds = before + elapsed;
        if (stops.minutes > 0 && elapsed >= 60 * stops.minutes)
            break;
        if (NotedEndSignal() != 0)
            end = kSignalled;
        else if (!growthstate.running)
            end = kOutOfMemory;
        else if (growthstate.stepcount >= plan.stallsteps)
            end = kStalled;
        if (end != kStopReached)
            break;
        progress.Report(elapsed);
        if (plan.checkpointminutes > 0 && elapsed >= checkpointdue) {
            SettleFlows();
            double minutes = plan.checkpointminutes;
            if (Fault fault = plan.checkpoint(*run)) {
                fprintf(stderr, "sarkelo-grow: checkpoint: %s; growth goes on\n", fault.line.c_str());
                minutes = std::min(minutes, kRetryMinutes);
            }
            checkpointdue = Now() - start + 60 * minutes;
        }
        const long tostall = plan.stallsteps - growthstate.stepcount;
        GrowBurst(std::min({kBurst, steps - growthstate.steptotal, tostall}), particles);
    }
    SettleFlows();
    run->seconds = before + Now() - start;
    progress.End();
    return end;
}

// Takes `steps` steps, or fewer if the aggregate reaches `particles` particles.
static void GrowBurst(long steps, int particles)
{
    // A flight counts as many steps, so flights are made one at a time: only the last can exceed `steps`.
    const long turn = growthstate.walk == kWalkFlights ? 1 : steps;
    const long end = growthstate.steptotal + steps;
    while (growthstate.steptotal < end && ncells < particles)
        WalkUntilStick(static_cast<int>(std::min(turn, end - growthstate.steptotal)));
}

static double Now()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
}
