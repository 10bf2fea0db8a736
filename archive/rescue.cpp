#include "archive/rescue.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include <hdf5.h>

#include "growth/growth_step.h"

namespace
{
// Which aggregate was last marked as saved, and its number of particles then.
struct SavedAggregate {
    unsigned aggregate;
    int particles;
};
} // namespace
static SavedAggregate saved = {0, -1};

static RunRecord (*describerun)() = nullptr; // nullptr: nothing is kept
static volatile std::sig_atomic_t caught = 0;

static bool KeepIn(const char *folder);

void PrepareRescue(RunRecord (*describe)())
{
    describerun = describe;
    H5dont_atexit(); // the library would end before the file is written
    HandleEndSignals([](int number) { caught = number; }, SA_RESTART);
}

void HandleEndSignals(void (*handler)(int), int flags)
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    for (const int number : {SIGHUP, SIGINT, SIGTERM}) {
        struct sigaction old = {};
        sigaction(number, nullptr, &old);
        if (old.sa_handler != SIG_IGN)
            sigaction(number, &action, nullptr);
    }
}

void LeaveAggregate()
{
    describerun = nullptr;
}

void EndBySignal()
{
    const int number = caught;
    if (number == 0)
        return;
    KeepAggregate();
    signal(number, SIG_DFL);
    raise(number);
}

void MarkAggregateSaved()
{
    saved = {AggregateNumber(), ncells};
}

bool HasUnsavedParticles()
{
    const bool hasgrown = ncells > 0 && cells[ncells - 1].parent >= 0; // roots come first
    return hasgrown && (saved.aggregate != AggregateNumber() || saved.particles != ncells);
}

void KeepAggregate()
{
    if (describerun == nullptr || !HasUnsavedParticles())
        return;
    const char *home = getenv("HOME");
    try {
        if (!KeepIn(".") && (home == nullptr || !KeepIn(home)))
            fprintf(stderr, "The aggregate could not be kept\n");
    } catch (const std::bad_alloc &) {
        fprintf(stderr, "Not enough memory to keep the aggregate\n");
    }
    LeaveAggregate();
}

static bool KeepIn(const char *folder)
{
    char name[64];
    const std::time_t now = std::time(nullptr);
    std::strftime(name, sizeof name, "sarkelo-rescue-%Y%m%d-%H%M%S", std::localtime(&now));
    const std::string path = std::string(folder) == "." ? name : std::string(folder) + "/" + name;
    if (WriteAggregate(path + kAggregateExtension, describerun()))
        return false;
    fprintf(stderr, "The aggregate is kept. To go on with it:\n    sarkelo-view %s%s\n", path.c_str(),
            kAggregateExtension);
    return true;
}
