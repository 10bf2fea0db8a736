#include "archive/rescue.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include <fcntl.h>
#include <hdf5.h>
#include <unistd.h>

#include "base/end_signals.h"
#include "base/output_file.h"
#include "growth/aggregate.h"
#include "search/neighbour_search.h"

namespace
{
// The aggregate that was last marked as saved, by AggregateNumber, and its number of particles at that time
struct SavedAggregate {
    unsigned aggregate;
    int particles;
};
} // namespace
static SavedAggregate saved = {0, -1};

static RunRecord (*getrunrecord)() = nullptr; // nullptr: the rescue is off

static std::string StemOfNow();
static int Reserve(const std::string &folder, const std::string &stem, std::string *path);

void ArmRescue(RunRecord (*describe)())
{
    getrunrecord = describe;
    H5dont_atexit(); // at exit, the library would close before the file is written
    NoteEndSignals(true);
}

void DisarmRescue()
{
    getrunrecord = nullptr;
}

bool IsRescueArmed()
{
    return getrunrecord != nullptr;
}

void HandlePendingSignal()
{
    const int number = NotedEndSignal();
    if (number == 0)
        return;
    RescueAggregate();
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

void RescueAggregate()
{
    if (getrunrecord == nullptr || !HasUnsavedParticles())
        return;
    try {
        std::vector<std::string> folders = {"."};
        for (const char *variable : {"HOME", "TMPDIR"})
            if (const char *folder = getenv(variable); folder != nullptr && *folder != '\0')
                folders.push_back(folder);
        folders.push_back("/tmp");
        FreeNeighbourIndex(); // makes room in memory for the file
        std::string path;
        if (const Fault fault = WriteRescue(folders, StemOfNow(), getrunrecord(), &path))
            fprintf(stderr, "The aggregate could not be kept: %s\n", fault.line.c_str());
        else
            fprintf(stderr, "The aggregate is kept. To go on with it:\n    sarkelo-view %s\n", path.c_str());
    } catch (const std::bad_alloc &) {
        fprintf(stderr, "Not enough memory to keep the aggregate\n");
    }
    DisarmRescue();
}

Fault WriteRescue(const std::vector<std::string> &folders, const std::string &stem, const RunRecord &run,
                  std::string *path)
{
    Fault fault(kFileFault, "");
    for (const std::string &folder : folders) {
        std::string why;
        if (const int reason = Reserve(folder, stem, path); reason != 0) {
            why = WriteFault(folder, strerror(reason)).line;
        } else {
            const Fault unwritten = WriteAggregate(*path, run);
            if (!unwritten)
                return {};
            unlink(path->c_str());
            fault.kind = unwritten.kind;
            why = unwritten.line;
        }
        fault.line += (fault.line.empty() ? "" : "; ") + why;
    }
    return fault;
}

static std::string StemOfNow()
{
    char date[32];
    const std::time_t now = std::time(nullptr);
    std::strftime(date, sizeof date, "%Y%m%d-%H%M%S", std::localtime(&now));
    return std::string(kRescueName) + date;
}

// Creates an empty file under the first name that is free. Returns 0, or the errno value that says why it failed.
static int Reserve(const std::string &folder, const std::string &stem, std::string *path)
{
    const std::string start = folder == "." ? stem : folder + "/" + stem;
    for (int number = 1;; number++) {
        *path = start;
        if (number > 1)
            path->append("-").append(std::to_string(number));
        path->append(kAggregateExtension);
        const int file = open(path->c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
        if (file >= 0) {
            close(file);
            return 0;
        }
        if (errno != EEXIST)
            return errno;
    }
}
