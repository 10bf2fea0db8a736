#include "batch/batch.h"

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include <unistd.h>

#include "archive/rescue.h"
#include "base/end_signals.h"
#include "base/output_file.h"
#include "batch/command.h"
#include "batch/growth.h"
#include "batch/measure.h"
#include "batch/outputs.h"
#include "export/slices.h"
#include "growth/camera_home.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "recipe/recipe_reader.h"
#include "recipe/start.h"

namespace fs = std::filesystem;

namespace
{
// The state from which a run starts or continues
struct Start {
    RunRecord run;
    bool ownoutput = false, owncheckpoint = false; // the existing file is this run's
    std::string continuedfile;                     // the file that the run continues; empty: a new run
};
} // namespace

static Fault FindStart(const Command &command, Start *start);
static Fault CheckStop(const Recipe &recipe);
static Fault ContinueRun(const Command &command, Start *start);
static Fault LookFor(const std::string &path, bool overwrites, bool *own, Start *start,
                     StoredAggregate *furthest);
static int GrowAndWrite(const Command &command, Start *start);
static int Finish(const Command &command, const Start &start, GrowthEnd end, OwnFile *output,
                  OwnFile *checkpoint);
static Fault WriteResult(const RunRecord &run, OwnFile *output);
static int WriteFurtherOutputs(const Command &command, const RunRecord &run);
static Fault Save(const SaveRequest &save);
static Fault WriteSlices(const SliceRequest &slices);
static int ReportAndKeepFirst(int status, const Fault &fault);
static int ReportFault(Fault fault);

int RunBatch(int argc, char **argv)
{
    setlocale(LC_ALL, "C");
    Command command;
    Fault fault;
    if (!ReadCommand(argc, argv, &command, &fault))
        return ReportFault(fault);
    if (command.printsrecipe) {
        PrintRecipe(stdout, command.recipe);
        return fflush(stdout) == 0 ? 0 : ReportFault({kFileFault, "cannot print the recipe"});
    }
    if (IsSameFile(command.checkpoint, command.output))
        command.checkpoint = command.output;
    signal(SIGXFSZ, SIG_IGN); // a file that grows too large is a fault of writing
    signal(SIGPIPE, SIG_IGN); // as is a pipe that nobody reads
    NoteEndSignals(false);
    CameraHome();
    SetProgramDefaults();
    Start start;
    fault = FindStart(command, &start);
    if (!fault)
        fault = CheckOutputs(command, start.ownoutput, start.owncheckpoint);
    return fault ? ReportFault(fault) : GrowAndWrite(command, &start);
}

// Before growth starts -------------------------------------------------------------------------------------

static Fault FindStart(const Command &command, Start *start)
{
    start->run.view = camera;
    if (command.resume.empty()) {
        Fault fault = StartRun(command.recipe);
        if (!fault)
            fault = CheckStop(command.recipe);
        return fault || !command.continues ? fault : ContinueRun(command, start);
    }
    StoredAggregate stored;
    if (Fault fault = ReadAggregate(command.resume, &stored))
        return fault;
    start->run = stored.run;
    start->continuedfile = command.resume;
    start->ownoutput = IsSameFile(command.resume, command.output);
    start->owncheckpoint = start->ownoutput && command.checkpoint == command.output;
    ResumeRun(std::move(stored));
    ApplyGroup(command.recipe, "drawing");
    return {};
}

// More roots than the particles at which growth stops are a mistake: growth would stop before it starts.
static Fault CheckStop(const Recipe &recipe)
{
    if (recipe.particles == 0 || ncells <= recipe.particles)
        return {};
    return {kRequestFault, recipe.PlaceOf(recipe.seedfile.empty() ? "roots.count" : "roots.file") + ": " +
                               std::to_string(ncells) + " roots are more than the " +
                               std::to_string(recipe.particles) + " particles at which growth stops"};
}

// Continues from the output or the checkpoint, whichever has more steps.
static Fault ContinueRun(const Command &command, Start *start)
{
    StoredAggregate furthest;
    if (Fault fault = LookFor(command.output, command.overwrites, &start->ownoutput, start, &furthest))
        return fault;
    if (command.checkpoint == command.output)
        start->owncheckpoint = start->ownoutput;
    else if (Fault fault =
                 LookFor(command.checkpoint, command.overwrites, &start->owncheckpoint, start, &furthest))
        return fault;
    if (start->continuedfile.empty())
        return {};
    start->run = furthest.run;
    ResumeRun(std::move(furthest));
    SetDefaults("drawing");
    ApplyGroup(command.recipe, "drawing");
    return {};
}

// Reads the aggregate at `path`, if there is one, and stores it in *furthest if it has more steps than the one there.
// Returns a fault unless it is of this run, or is unreadable and to be overwritten.
static Fault LookFor(const std::string &path, bool overwrites, bool *own, Start *start,
                     StoredAggregate *furthest)
{
    std::error_code error;
    if (!fs::exists(path, error))
        return {};
    StoredAggregate stored;
    if (Fault fault = ReadAggregate(path, &stored)) {
        if (!overwrites)
            return fault;
        ReportFault({kFileFault, fault.line + "; it is overwritten"});
        return {};
    }
    const std::string difference = DifferenceFromRun(stored);
    if (!difference.empty())
        return {kRequestFault, path + ": cannot be continued: " + difference};
    *own = true;
    if (start->continuedfile.empty() || stored.state.steptotal > furthest->state.steptotal) {
        *furthest = std::move(stored);
        start->continuedfile = path;
    }
    return {};
}

// Growth, and after it --------------------------------------------------------------------------------------

static int GrowAndWrite(const Command &command, Start *start)
{
    OwnFile output(command.output);
    OwnFile separate(command.checkpoint);
    OwnFile &checkpoint = command.checkpoint == command.output ? output : separate;
    const long before = growthstate.steptotal;
    const GrowthPlan plan = {command.recipe,
                             [&](const RunRecord &run) { return checkpoint.Write(run); },
                             command.checkpointminutes,
                             command.quiet,
                             kStallSteps,
                             command.threads};
    const GrowthEnd end = Grow(plan, &start->run);
    // With --continue, the output of a run that was already finished is not written again.
    const bool unchanged =
        command.continues && growthstate.steptotal == before && start->continuedfile == command.output;
    return Finish(command, *start, end, unchanged ? nullptr : &output,
                  &checkpoint == &output ? nullptr : &checkpoint);
}

// Writes the output unless `output` is nullptr, removes the separate checkpoint unless `checkpoint` is nullptr, and
// writes statistics, exports and slices unless a signal has come. Returns the exit status.
static int Finish(const Command &command, const Start &start, GrowthEnd end, OwnFile *output,
                  OwnFile *checkpoint)
{
    const RunRecord &run = start.run;
    int status = 0;
    if (output != nullptr)
        status = ReportAndKeepFirst(status, WriteResult(run, output));
    if (status == 0 && checkpoint != nullptr && checkpoint->Path() != command.resume)
        checkpoint->Remove(start.owncheckpoint);
    if (end == kStalled)
        status =
            ReportAndKeepFirst(status, {kGrowthFault, "growth has stalled at " + std::to_string(ncells) +
                                                          " particles: none has arrived for 10^9 steps"});
    if (end == kOutOfMemory)
        status = ReportAndKeepFirst(status, {kMemoryFault, "out of memory: growth stopped at " +
                                                               std::to_string(ncells) + " particles"});
    if (!command.quiet && status == 0)
        printf("%s: %d particles, radius %g, %.1f s\n", command.output.c_str(), ncells, growthstate.radius,
               run.seconds);
    fflush(stdout);
    if (status == 0)
        EndAtOnceBySignals();
    const int saved = NotedEndSignal() == 0 ? WriteFurtherOutputs(command, run) : 128 + NotedEndSignal();
    return status != 0 ? status : saved;
}

// Writes the run to the output or, if that fails, to a rescue file in another directory.
static Fault WriteResult(const RunRecord &run, OwnFile *output)
{
    Fault fault = output->Write(run);
    if (!fault)
        return fault;
    std::error_code error;
    const char *home = getenv("HOME");
    const std::string temporary = fs::temp_directory_path(error).string();
    std::string path;
    const Fault lost = WriteRescue({error ? "/tmp" : temporary, "/tmp", ".", home != nullptr ? home : "."},
                                   "rescued-" + std::to_string(getpid()), run, &path);
    fault.line +=
        lost ? "; the aggregate could not be kept: " + lost.line : "; the aggregate is kept in " + path;
    return fault;
}

// Writes statistics, exports and slices. The statistics come first, since an exported report includes them.
static int WriteFurtherOutputs(const Command &command, const RunRecord &run)
{
    int status = 0;
    if (!command.statistics.empty())
        status = ReportAndKeepFirst(status, WriteStatistics(command.statistics, run));
    for (const SaveRequest &save : command.saves)
        status = ReportAndKeepFirst(status, Save(save));
    if (command.slices)
        status = ReportAndKeepFirst(status, WriteSlices(*command.slices));
    return status;
}

static Fault Save(const SaveRequest &save)
{
    OutputFile file(save.path.c_str());
    if (file.Stream() != nullptr && !WriteModel(file.Stream(), *save.kind))
        return {kMemoryFault, save.path + ": not enough memory"};
    return file.Finish();
}

static Fault WriteSlices(const SliceRequest &slices)
{
    std::error_code error;
    fs::create_directory(slices.folder, error);
    if (error)
        return {kFileFault, slices.folder + ": " + error.message()};
    return DoSlice(slices.folder, slices.count, slices.normal, nullptr).fault;
}

// Reports a fault. Returns `status`, or the status of this fault if there was none before.
static int ReportAndKeepFirst(int status, const Fault &fault)
{
    const int latest = ReportFault(fault);
    return status != 0 ? status : latest;
}

// Reports a fault in one line: control characters in names and values become spaces.
static int ReportFault(Fault fault)
{
    std::replace_if(
        fault.line.begin(), fault.line.end(), [](unsigned char c) { return c < ' ' || c == 0x7f; }, ' ');
    if (fault)
        fprintf(stderr, "sarkelo-grow: %s\n", fault.line.c_str());
    return fault.kind;
}
