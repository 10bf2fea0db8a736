#include "batch/batch.h"

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <set>

#include <sys/stat.h>
#include <unistd.h>

#include "batch/command.h"
#include "batch/growth.h"
#include "batch/measure.h"
#include "export/output_file.h"
#include "export/slices.h"
#include "growth/camera_home.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/sources.h"

namespace fs = std::filesystem;

static Fault CheckOutputs(const Command &command, const std::string &own);
static Fault CheckOutput(const std::string &path, bool overwrites);
static Fault StartOrGoOn(const Command &command, RunRecord *run, std::string *own);
static Fault FindUnfinished(const Command &command, StoredAggregate *found, std::string *path);
static int GrowAndWrite(const Command &command, const std::string &own, RunRecord *run);
static Fault WriteResult(const Command &command, const RunRecord &run);
static int Worse(int status, const Fault &fault);
static Fault Save(const SaveRequest &save);
static Fault WriteSlices(const SliceRequest &slices);
static int Tell(const Fault &fault);

int RunBatch(int argc, char **argv)
{
    setlocale(LC_ALL, "C");
    Command command;
    Fault fault;
    if (!ReadCommand(argc, argv, &command, &fault))
        return Tell(fault);
    if (command.printsrecipe) {
        PrintRecipe(stdout, command.recipe);
        return fflush(stdout) == 0 ? 0 : Tell({kFileFault, "cannot print the recipe"});
    }
    CatchSignals();
    CameraHome();
    SetProgramDefaults();
    RunRecord run;
    run.view = camera;
    std::string own;
    fault = StartOrGoOn(command, &run, &own);
    if (!fault)
        fault = CheckOutputs(command, own);
    if (fault)
        return Tell(fault);
    return GrowAndWrite(command, own, &run);
}

// Before growth starts -------------------------------------------------------------------------------------

// `own` is the file that the run goes on from, and may be replaced.
static Fault CheckOutputs(const Command &command, const std::string &own)
{
    const bool goeson = command.continues && !own.empty();
    const auto isown = [&](const std::string &path) {
        std::error_code ignored;
        return !own.empty() && fs::equivalent(path, own, ignored);
    };
    std::vector<std::string> paths;
    for (const std::string &path : {command.output, command.checkpoint}) {
        // What a killed run of this command left beside the one it goes on from is its own as well.
        if (Fault fault = CheckOutput(path, command.overwrites || goeson || isown(path)))
            return fault;
    }
    paths.push_back(command.output);
    if (command.checkpoint != command.output)
        paths.push_back(command.checkpoint);
    for (const SaveRequest &save : command.saves)
        paths.push_back(save.path);
    if (!command.statistics.empty())
        paths.push_back(command.statistics);
    std::set<fs::path> seen;
    for (const std::string &path : paths)
        if (!seen.insert(fs::absolute(path).lexically_normal()).second)
            return {kRequestFault, path + ": is to be written twice"};
    for (std::size_t i = 1; i < paths.size(); i++)
        if (paths[i] != command.checkpoint)
            if (Fault fault = CheckOutput(paths[i], command.overwrites || goeson))
                return fault;
    if (!command.slices)
        return {};
    std::error_code error;
    const std::string &folder = command.slices->folder;
    const bool there = fs::exists(folder, error);
    if (there && !fs::is_directory(folder, error))
        return {kFileFault, folder + ": no directory"};
    if (there && !command.overwrites && !goeson && fs::exists(fs::path(folder) / "slice_000.txt", error))
        return {kFileFault, folder + ": holds slices already; --force overwrites them"};
    return CheckOutput((there ? fs::path(folder) / "." : fs::path(folder)).string(), there);
}

static Fault CheckOutput(const std::string &path, bool overwrites)
{
    struct stat about = {};
    if (stat(path.c_str(), &about) == 0) {
        if (S_ISREG(about.st_mode) && !overwrites)
            return {kFileFault, path + ": exists already; --force overwrites it"};
        if (S_ISDIR(about.st_mode) && !overwrites)
            return {kFileFault, path + ": is a directory"};
    }
    const fs::path folder = fs::path(path).parent_path();
    if (access(folder.empty() ? "." : folder.c_str(), W_OK | X_OK) != 0)
        return {kFileFault, path + ": cannot be written: " + strerror(errno)};
    return {};
}

static Fault StartOrGoOn(const Command &command, RunRecord *run, std::string *own)
{
    StoredAggregate stored;
    if (!command.resume.empty()) {
        if (Fault fault = ReadAggregate(command.resume, &stored))
            return fault;
        *own = command.resume;
        *run = stored.run;
        ResumeRun(std::move(stored));
        ApplyGroup(command.recipe, "drawing");
        return {};
    }
    if (Fault fault = StartRun(command.recipe))
        return fault;
    if (!command.continues)
        return {};
    if (Fault fault = FindUnfinished(command, &stored, own))
        return fault;
    if (own->empty())
        return {};
    const std::string difference = DifferenceFromRun(stored);
    if (!difference.empty())
        return {kRequestFault, *own + ": cannot be continued: " + difference};
    *run = stored.run;
    ResumeRun(std::move(stored));
    SetDefaults("drawing");
    ApplyGroup(command.recipe, "drawing");
    return {};
}

// Of the output and its checkpoint the one that has come further; none where neither stands.
static Fault FindUnfinished(const Command &command, StoredAggregate *found, std::string *path)
{
    Fault fault;
    for (const std::string &candidate : {command.output, command.checkpoint}) {
        std::error_code error;
        if (candidate == *path || !fs::exists(candidate, error))
            continue;
        StoredAggregate stored;
        const Fault bad = ReadAggregate(candidate, &stored);
        if (bad) {
            fault = bad;
        } else if (path->empty() || stored.state.steptotal > found->state.steptotal) {
            *found = std::move(stored);
            *path = candidate;
        }
    }
    if (path->empty())
        return fault;
    if (fault)
        Tell({kFileFault, fault.line + "; going on from " + *path});
    return {};
}

// Growth, and after it --------------------------------------------------------------------------------------

// `own` is the file that the run goes on from.
static int GrowAndWrite(const Command &command, const std::string &own, RunRecord *run)
{
    const long before = growthstate.steptotal;
    const GrowthEnd end =
        Grow({command.recipe, command.checkpoint, command.checkpointminutes, command.quiet}, run);
    int status = 0;
    // A finished run that was continued stays as it is.
    const bool unchanged = growthstate.steptotal == before && command.continues && own == command.output;
    if (!unchanged)
        status = Worse(status, WriteResult(command, *run));
    if (end == kStalled)
        status = Worse(status, {kGrowthFault, "growth has stalled: no particle has arrived for 10^9 steps; " +
                                                  command.output + " has " + std::to_string(ncells)});
    if (end == kOutOfMemory)
        status = Worse(status, {kMemoryFault, ""}); // which growth has told
    if (!command.quiet && status == 0)
        printf("%s: %d particles, radius %g, %.1f s\n", command.output.c_str(), ncells, growthstate.radius,
               run->seconds);
    fflush(stdout);
    // Statistics first: a report of the run has them, too.
    if (!command.statistics.empty() && CaughtSignal() == 0)
        status = Worse(status, WriteStatistics(command.statistics, *run));
    for (const SaveRequest &save : command.saves)
        if (CaughtSignal() == 0)
            status = Worse(status, Save(save));
    if (command.slices && CaughtSignal() == 0)
        status = Worse(status, WriteSlices(*command.slices));
    return status != 0 ? status : CaughtSignal() != 0 ? 128 + CaughtSignal() : 0;
}

// Where the output cannot be written, the run is kept elsewhere.
static Fault WriteResult(const Command &command, const RunRecord &run)
{
    Fault fault = WriteAggregate(command.output, run);
    if (!fault) {
        std::error_code ignored;
        if (command.checkpoint != command.output)
            fs::remove(command.checkpoint, ignored);
        return fault;
    }
    std::error_code error;
    const fs::path folder = fs::temp_directory_path(error);
    const std::string rescue =
        (folder / ("rescued-" + std::to_string(getpid()) + kAggregateExtension)).string();
    if (!error && !WriteAggregate(rescue, run))
        fault.line += "; the aggregate is kept in " + rescue;
    return fault;
}

static Fault Save(const SaveRequest &save)
{
    OutputFile file(save.path.c_str());
    if (file.Stream() == nullptr)
        return {kFileFault, ""};
    if (!WriteModel(file.Stream(), *save.kind))
        return {kMemoryFault, save.path + ": not enough memory"};
    return file.Finish() ? Fault() : Fault(kFileFault, "");
}

static Fault WriteSlices(const SliceRequest &slices)
{
    std::error_code error;
    fs::create_directory(slices.folder, error);
    const fs::path back = fs::current_path();
    if (!error)
        fs::current_path(slices.folder, error);
    if (error)
        return {kFileFault, slices.folder + ": " + error.message()};
    const SliceResult result = DoSlice(slices.count, slices.normal, nullptr);
    fs::current_path(back, error);
    switch (result) {
    case kSlicesDone:
        return {};
    case kSliceUnwritten:
    case kSliceUnopened:
        return {kFileFault, ""};
    case kSlicesOutOfMemory:
        return {kMemoryFault, ""};
    }
    return {};
}

// The first fault decides the status.
static int Worse(int status, const Fault &fault)
{
    const int told = Tell(fault);
    return status != 0 ? status : told;
}

// A fault without a line has been told already.
static int Tell(const Fault &fault)
{
    if (!fault.line.empty())
        fprintf(stderr, "sarkelo-grow: %s\n", fault.line.c_str());
    return fault.kind;
}
