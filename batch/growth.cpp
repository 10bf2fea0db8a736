#include "batch/growth.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "base/end_signals.h"
#include "batch/progress.h"
#include "growth/deferred_flows.h"
#include "growth/growth_step.h"
#include "growth/parallel_growth.h"

// Steps between two readings of the clock: a fraction of a millisecond
constexpr long kBurst = 8192;
// Most minutes until a checkpoint that could not be written is tried again
constexpr double kRetryMinutes = 1;

static double Now();

namespace
{
// What growth looks at from time to time
class Watch
{
public:
    Watch(const GrowthPlan &wanted, RunRecord *run)
        : plan(wanted), record(run), progress(wanted.stops, wanted.quiet), start(Now()), before(run->seconds),
          checkpointdue(wanted.checkpointminutes > 0 ? 60 * wanted.checkpointminutes : HUGE_VAL)
    {
    }

    // Reports progress. Returns whether growth goes on; otherwise its time is over, a signal has come, or a checkpoint
    // is due.
    bool Look()
    {
        record->seconds = before + Elapsed();
        progress.Report(Elapsed());
        return !IsTimeOver() && NotedEndSignal() == 0 && Elapsed() < checkpointdue;
    }

    [[nodiscard]] bool IsTimeOver() const
    {
        return plan.stops.minutes > 0 && Elapsed() >= 60 * plan.stops.minutes;
    }

    // Writes a checkpoint if one is due.
    void SaveCheckpoint()
    {
        if (Elapsed() < checkpointdue)
            return;
        SettleFlows();
        double minutes = plan.checkpointminutes;
        if (Fault fault = plan.checkpoint(*record)) {
            fprintf(stderr, "sarkelo-grow: checkpoint: %s; growth goes on\n", fault.line.c_str());
            minutes = std::min(minutes, kRetryMinutes);
        }
        checkpointdue = Elapsed() + 60 * minutes;
    }

    void End()
    {
        record->seconds = before + Elapsed();
        progress.End();
    }

private:
    [[nodiscard]] double Elapsed() const { return Now() - start; }

    const GrowthPlan &plan;
    RunRecord *record;
    Progress progress;
    double start, before, checkpointdue;
};
} // namespace

static GrowthStop GrowBurst(const GrowthLimits &limits);

GrowthEnd Grow(const GrowthPlan &plan, RunRecord *run)
{
    const DeferredFlows deferredflows;
    Watch watch(plan, run);
    GrowthLimits limits;
    if (plan.stops.particles > 0)
        limits.particles = static_cast<int>(plan.stops.particles);
    if (plan.stops.steps > 0)
        limits.steps = plan.stops.steps;
    limits.stallsteps = plan.stallsteps;
    limits.poll = [&] { return watch.Look(); };
    GrowthStop stop = GrowthStop::kPause;
    while (stop == GrowthStop::kPause) {
        if (!watch.Look()) {
            if (watch.IsTimeOver() || NotedEndSignal() != 0)
                break;
            watch.SaveCheckpoint();
        }
        stop = growthstate.walk == kWalkFlights ? GrowFlights(limits, plan.threads) : GrowBurst(limits);
    }
    SettleFlows();
    watch.End();
    if (stop == GrowthStop::kStalled)
        return kStalled;
    if (stop == GrowthStop::kNoMemory)
        return kOutOfMemory;
    return stop == GrowthStop::kPause && NotedEndSignal() != 0 ? kSignalled : kStopReached;
}

// Takes kBurst steps, or fewer if a limit is reached.
static GrowthStop GrowBurst(const GrowthLimits &limits)
{
    const long end = growthstate.steptotal + std::min(kBurst, limits.steps - growthstate.steptotal);
    while (growthstate.steptotal < end && ncells < limits.particles && growthstate.running &&
           growthstate.stepcount < limits.stallsteps)
        IterateUntilStick(static_cast<int>(
            std::min(end - growthstate.steptotal, limits.stallsteps - growthstate.stepcount)));
    if (ncells >= limits.particles || growthstate.steptotal >= limits.steps)
        return GrowthStop::kReached;
    if (!growthstate.running)
        return GrowthStop::kNoMemory;
    return growthstate.stepcount >= limits.stallsteps ? GrowthStop::kStalled : GrowthStop::kPause;
}

static double Now()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
}
