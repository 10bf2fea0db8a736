// Every action is tried with memory that fails at one allocation, alone and with all that follow, and on a disk that
// is full after so many bytes: the program goes on, nothing is lost or half done, and the user reads about it. Each
// try runs in a process of its own, so that none profits from what an earlier one has allocated.

#include <csignal>
#include <functional>
#include <map>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include "app/idle.h"
#include "batch/growth.h"
#include "export/save_dialog.h"
#include "faults/failing_memory.h"
#include "growth/camera_home.h"
#include "growth/growth_step.h"
#include "growth/parallel_growth.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "panels.h"
#include "search/neighbour_search.h"
#include "surface/samples.h"
#include "surface/surface.h"
#include "temporary_file.h"
#include "viewer/display.h"
#include "viewer/menus.h"
#include "viewer/pictures.h"
#include "viewer/statistics.h"

namespace fs = std::filesystem;

// The files of the current directory, and the records under the name ""
using State = std::map<std::string, std::string>;

namespace
{
struct Action {
    std::string name;
    std::function<void()> act;
    std::function<void()> prepare = [] {}; // after PrepareRun
    bool stops = false;                    // growth may stop on the way, and keeps what has grown
};

struct Failure {
    FailingMemory memory = {};
    rlim_t room = RLIM_INFINITY; // bytes beyond which no file grows
};
} // namespace

constexpr long kAllocations = 40;                              // of an action that are tried at most
constexpr size_t kRooms = 25;                                  // sizes of a disk that are tried at most
constexpr int kPrepared = 60;                                  // particles before an action
static const std::string kWindowGrowth = "growth in a window"; // prints why it stops

// Twenty roots, a few branches on them, a surface of 16 faces
static void PrepareRun()
{
    StartWith({{&growthstate.roottype, kRootRingZ}, {&growthstate.nroots, 20}});
    CameraHome();
    CreatePanelsOnce();
    BuildSample(11);
    Grow(IterateSystem, kPrepared, 1000000);
    UpdateForms();
    settingformvisible = stlformvisible = sliceformvisible = 1;
    options.slicecount = 3;
    camera.screenwidth = camera.screenheight = 40;
}

template<typename T>
static std::string Bytes(const T *first, int count = 1)
{
    return {reinterpret_cast<const char *>(first), sizeof(T) * static_cast<size_t>(count)};
}

static State TakeState()
{
    const unsigned long long hash = HashParticles(ncells);
    State state;
    state[""] = Bytes(&growthstate) + Bytes(&options) + Bytes(&hash) + Bytes(&ncells) + Bytes(&nseeds) +
                Bytes(stltri, nstltri) + Bytes(&stlmin) + Bytes(&stlmax);
    for (const auto &entry : fs::directory_iterator("."))
        state[entry.path().filename()] = ReadWhole(entry.path());
    return state;
}

static void Report(const Fault &fault)
{
    fputs(fault.line.c_str(), stderr);
}

static void ReadBack(const std::string &path)
{
    StoredAggregate stored;
    const Fault fault = ReadAggregate(path, &stored);
    Report(fault);
    if (!fault)
        ResumeRun(std::move(stored));
}

static void CountAllBoxes()
{
    Guarded<HandleMainMenu>(kCommandStatistics);
    while (options.boxcountrequest)
        Guarded<HandleIdle, kRepeatedCallback>();
}

static void DrawFilm()
{
    PictureRequest request;
    request.path = "saved.png";
    request.width = request.height = 40; // drawn in four tiles
    request.fits = true;
    request.film = 2;
    Report(DrawPictures(request));
}

static void GrowInWindow()
{
    for (int i = 0; i < 2000 && ncells < 100; i++)
        HandleIdle(); // also once growth has stopped: there is no second message
}

static void GrowByBatch(const Recipe &stops)
{
    RunRecord run;
    if (Grow({stops, {}, 0, true, kStallSteps, 2}, &run) !=
        (ncells == stops.particles ? kStopReached : kOutOfMemory))
        abort();
}

static void DrawFrames(int count)
{
    for (int frame = 0; frame < count; frame++)
        Guarded<HandleDisplay, kRepeatedCallback>();
}

static std::vector<Action> ListActions(const std::string &aggregate)
{
    RunRecord run;
    run.view.aperture = 60;
    Recipe stops;
    stops.particles = 300;
    const auto writeandforget = [=] { WriteAggregate(aggregate, run), StartAfresh(); };
    std::vector<Action> actions = {
        {"transform", [] { fl_set_input(stlform->scalex, "2"), Work(stlform->apply); }},
        {"number of roots", [] { Type(settingform->nroots, "25"); }},
        {"association", [] { fakebutton = 1, Work(settingform->association); }},
        {"box count", CountAllBoxes},
        {"slice", [] { Work(sliceform->slice); }},
        {"recording", [] { options.recordframes = 1, DrawFrames(5), options.recordframes = 0; }},
        {"film", Guarded<DrawFilm>},
        {"write aggregate", [=] { Report(WriteAggregate("saved", run)); }},
        {"read aggregate", [=] { ReadBack(aggregate); }, writeandforget},
        {kWindowGrowth, GrowInWindow, DropNeighbourIndex, true},
        {"growth by sarkelo-grow", [=] { GrowByBatch(stops); }, [] {}, true},
        {"growth by flights on two threads", [=] { GrowByBatch(stops); },
         [] { growthstate.walk = kWalkFlights, fewparticles = 5, DropNeighbourIndex(); }, true},
    };
    const auto choose = [&](auto menu, std::initializer_list<int> entries, const fs::path &file) {
        for (const int entry : entries)
            actions.push_back({"entry " + std::to_string(entry) + " " + file.string(), [=] { menu(entry); },
                               [=] { fakefile = file; }});
    };
    const auto mainmenu = Guarded<HandleMainMenu>;
    const fs::path inputs = SARKELO_TESTS "/fuzz";
    choose(Guarded<HandleSaveMenu>, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, "saved");
    choose(mainmenu, {kCommandSaveSurface, kCommandInformation, kCommandRestart}, "saved");
    choose(mainmenu, {kCommandReadSurface}, inputs / "stl/ascii");
    choose(mainmenu, {kCommandReadSurface, kCommandReadSeeds}, inputs / "stl/little");
    choose(mainmenu, {kCommandReadSeeds}, inputs / "seeds/three");
    choose(Guarded<HandleSampleMenu>, {12, 100}, "");
    choose(Guarded<HandleSTLMenu>, {1, 2, 3, 4, 5}, "");
    choose([](int mode) { options.dlamode = options.surfacemode = mode, DrawFrames(1); }, {1, 2, 3, 4, 5},
           "");
    return actions;
}

// Acts while something fails. Returns what the user reads: standard error and the message boxes.
static std::string ActWith(const Failure &failure, const Action &action)
{
    int ends[2];
    if (pipe2(ends, O_NONBLOCK) != 0)
        abort();
    dup2(ends[1], STDERR_FILENO);
    ForgetCalls();
    rlimit old;
    getrlimit(RLIMIT_FSIZE, &old);
    const rlimit limit = {failure.room, old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
    failingmemory = failure.memory;
    action.act();
    failingmemory.armed = false;
    setrlimit(RLIMIT_FSIZE, &old);
    std::string text(1 << 16, ' ');
    text.resize(static_cast<size_t>(std::max(read(ends[0], text.data(), text.size()), ssize_t{0})));
    for (const Call &box : CallsOf("fl_show_message"))
        text += Text(box);
    return text;
}

static std::string JudgeStop(const Action &action, const std::string &message, Vector newest)
{
    const int grown = ncells;
    const std::string stop = "Out of memory: growth stopped at " + std::to_string(grown) + " particles\n";
    if (growthstate.running || grown < kPrepared || cells[kPrepared - 1].p != newest ||
        message != (action.name == kWindowGrowth ? stop : ""))
        return "growth has not stopped as it should: " + message;
    growthstate.running = 1;
    Grow(IterateSystem, grown + 1, 1000000);
    return ncells == grown + 1 ? "" : "growth does not go on";
}

// What is wrong after an action with a failure, or nothing
static std::string Judge(const Action &action, const Failure &failure, State full)
{
    State before = TakeState();
    const Vector newest = cells[ncells - 1].p;
    const std::string message = ActWith(failure, action);
    State after = TakeState();
    if (after == full)
        return "";
    if (action.stops)
        return JudgeStop(action, message, newest);
    bool named = failure.room == RLIM_INFINITY;
    for (const State &names : {before, full, after})
        for (const auto &[name, ignored] : names) {
            if (after[name] != before[name] && after[name] != full[name])
                return name + " is half done"; // "": the records
            named |=
                after[name] != full[name] && message.find("Cannot write \"" + name + "\": ") < message.size();
        }
    if (message.empty() || !named)
        return "not done, and the user reads \"" + message + "\"";

    // What is left of the failure does no harm to a frame and another try.
    HandleDisplay();
    if (after[""] != before[""])
        return "";
    action.act();
    State again = TakeState();
    const auto is = [&](const auto &file) { return again[file.first] == file.second; };
    return std::all_of(full.begin(), full.end(), is) ? "" : "another try leaves something else";
}

// Runs `work` in a process of its own. Returns what it returns, or how the process ended.
static std::string InAProcess(const fs::path &answer, const std::function<std::string()> &work)
{
    fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        // What throws here must not go on as a second test program.
        const std::string found = [&]() noexcept { return work(); }();
        std::ofstream(answer) << found;
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status == 0 ? ReadWhole(answer) : "ended with status " + std::to_string(status);
}

TEST(Faults, NothingIsLostHalfDoneOrHidden)
{
    const TemporaryDirectory inputs, directory; // the second is the current one
    signal(SIGXFSZ, SIG_IGN);                   // as the program does
    size_t tried = 0;
    for (const Action &action : ListActions(inputs.path / "a.h5")) {
        const auto tryonce = [&](const std::function<std::string()> &work) {
            for (const auto &entry : fs::directory_iterator("."))
                fs::remove(entry.path());
            std::ofstream("saved") << "earlier";
            return InAProcess(inputs.path / "answer", [&] {
                PrepareRun();
                action.prepare();
                return work();
            });
        };
        const std::string records = tryonce([&] {
            failingmemory = {true};
            action.act();
            failingmemory.armed = false;
            return Bytes(&failingmemory.calls) + TakeState()[""];
        });
        long allocations = 0;
        memcpy(&allocations, records.data(), sizeof allocations);
        State full = TakeState();
        full[""] = records.substr(sizeof allocations);
        size_t largest = 0;
        for (const auto &[name, content] : full)
            largest = std::max(largest, name.empty() || content == "earlier" ? 0 : content.size());
        std::vector<Failure> failures;
        for (long k = 1; k <= allocations; k += 1 + allocations / kAllocations)
            for (const bool andallthatfollow : {false, true})
                failures.push_back({{true, k, andallthatfollow, 0}});
        for (size_t room = 0; room < largest; room += 1 + largest / kRooms)
            failures.push_back({{}, room});
        for (const Failure &failure : failures)
            EXPECT_EQ(tryonce([&] { return Judge(action, failure, full); }), "")
                << action.name << ": allocation " << failure.memory.first << ", room " << failure.room;
        tried += failures.size();
    }
    EXPECT_GT(tried, 1000);
}
