// Every allocation of every action fails once, alone and with all that follow: the program goes on, nothing
// is lost or half done, and the user is told. Each try runs in a process of its own, so that none profits
// from what an earlier one has allocated.

#include <functional>
#include <map>
#include <optional>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "app/idle.h"
#include "base/array.h"
#include "export/save_dialog.h"
#include "fakes/recorder.h"
#include "faults/failing_memory.h"
#include "growth/camera_home.h"
#include "growth/deferred_flows.h"
#include "growth/growth_step.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "panels.h"
#include "search/neighbour_search.h"
#include "surface/samples.h"
#include "surface/surface.h"
#include "temporary_file.h"
#include "toolkit/callback.h"
#include "viewer/display.h"
#include "viewer/menus.h"
#include "viewer/pictures.h"
#include "viewer/statistics.h"

namespace fs = std::filesystem;

namespace
{
struct Action {
    std::string name;
    std::function<void()> act;
    bool stopsgrowth = false; // it may end in the middle, growth stopped
};

// What must be as it was, or as the action leaves it.
struct State {
    std::string records;
    std::map<std::string, std::string> files; // of the current directory
};

const auto kMainMenu = Guarded<HandleMainMenu>;
const auto kSaveMenu = Guarded<HandleSaveMenu>;
const auto kSampleMenu = Guarded<HandleSampleMenu>;
const auto kDisplay = Guarded<HandleDisplay, kRepeatedCallback>;
const auto kIdle = Guarded<HandleIdle, kRepeatedCallback>;
} // namespace

// Twenty roots, a few branches on them, a surface of 16 faces.
static void PrepareRun()
{
    StartAfresh();
    CameraHome();
    CreatePanelsOnce();
    growthstate.roottype = kRootRingZ;
    growthstate.nroots = 20;
    RestartFromRoots();
    BuildSample(11);
    Grow(IterateSystem, 60, 1000000);
    UpdateForms();
    settingformvisible = stlformvisible = sliceformvisible = 1;
    options.slicecount = 3;
}

static State TakeState()
{
    State state;
    std::ostringstream text;
    text << std::hexfloat << HashParticles(ncells) << ' ' << ncells << ' ' << nseeds;
    for (const Parameter &parameter : Parameters())
        std::visit([&](const auto *field) { text << ' ' << *field; }, parameter.field);
    const GrowthState &g = growthstate;
    text << ' ' << g.pos.x << ' ' << g.pos.y << ' ' << g.pos.z << ' ' << g.radius << ' ' << g.maxweight << ' '
         << g.running << ' ' << g.stepcount << ' ' << g.rootname << ' ' << g.surfacename << ' '
         << options.surfacemode << ' ' << options.dlamode << ' ' << options.boxcountrequest << ' ' << nstltri
         << ' ' << stlmin.x << ' ' << stlmax.x;
    for (int i = 0; i < nstltri; i++)
        text << ' ' << stltri[i].p[0].x << ' ' << stltri[i].p[1].y << ' ' << stltri[i].p[2].z << ' '
             << stltri[i].D;
    state.records = text.str();
    for (const auto &entry : fs::directory_iterator("."))
        state.files[entry.path().filename()] = ReadWhole(entry.path());
    return state;
}

// Actions on the state of PrepareRun, in a directory with a file "saved" to be replaced.
static std::vector<Action> ListActions(const fs::path &inputs)
{
    std::vector<Action> actions;
    const auto withfile = [](const fs::path &file, const std::function<void()> &act) {
        return [=] {
            {
                const OwnAllocations own;
                fakefile = file;
            }
            act();
        };
    };
    for (int id = 1; id <= 10; id++)
        actions.push_back({"save " + std::to_string(id), withfile("saved", [=] { kSaveMenu(id); })});
    for (const int id : {kCommandSaveSurface, kCommandInformation})
        actions.push_back({"main menu " + std::to_string(id), withfile("saved", [=] { kMainMenu(id); })});
    for (const char *file : {"ascii.stl", "binary.stl", "short.stl"})
        actions.push_back({file, withfile(inputs / file, [] { kMainMenu(kCommandReadSurface); })});
    for (const char *file : {"roots.txt", "empty.txt"})
        actions.push_back({file, withfile(inputs / file, [] { kMainMenu(kCommandReadSeeds); })});
    for (const int id : {12, 100})
        actions.push_back({"sample " + std::to_string(id), [=] { kSampleMenu(id); }});
    for (int mode = 1; mode <= 5; mode++) {
        actions.push_back({"frame in mode " + std::to_string(mode), [=] {
                               options.dlamode = options.surfacemode = mode;
                               kDisplay();
                           }});
        actions.push_back({"surface in mode " + std::to_string(mode), [=] { Guarded<HandleSTLMenu>(mode); }});
    }
    actions.push_back({"slice", [] { Work(sliceform->slice); }});
    actions.push_back({"transform", [] {
                           fl_set_input(stlform->scalex, "2");
                           Work(stlform->apply);
                       }});
    actions.push_back({"number of roots", [] { Type(settingform->nroots, "25"); }});
    actions.push_back({"range of roots", [] { Type(settingform->rootrange, "12"); }});
    actions.push_back({"association", [] {
                           fakebutton = 1;
                           Work(settingform->association);
                       }});
    actions.push_back({"restart", [] { kMainMenu(kCommandRestart); }});
    actions.push_back({"box count", [] {
                           kMainMenu(kCommandStatistics);
                           for (int i = 0; i < 100 && options.boxcountrequest; i++)
                               CalcBoxCount(0, 0);
                           kDisplay();
                           while (options.boxcountrequest)
                               kIdle();
                       }});
    for (const int film : {0, 2}) {
        PictureRequest request;
        request.path = "saved.png";
        request.width = request.height = 40; // drawn in four tiles
        request.fits = true;
        request.film = film;
        actions.push_back({film > 0 ? "film" : "picture", [=] {
                               try {
                                   const Fault fault = DrawPictures(request);
                                   fputs(fault.line.c_str(), stderr);
                               } catch (const std::bad_alloc &) {
                                   fputs("not enough memory", stderr);
                               }
                           }});
    }
    actions.push_back({"capture", [] {
                           options.dumpnext = 1;
                           kDisplay();
                       }});
    actions.push_back({"growth",
                       [] {
                           DropNeighbourIndex();
                           for (int i = 0; i < 40; i++)
                               kIdle();
                       },
                       true});
    return actions;
}

// What is wrong after an action with failures, or nothing.
static std::string Judge(const Action &action, const State &before, const State &full, bool told)
{
    const State after = TakeState();
    for (const auto &[name, content] : after.files) {
        const auto old = before.files.find(name);
        const auto whole = full.files.find(name);
        if ((old == before.files.end() || content != old->second) &&
            (whole == full.files.end() || content != whole->second))
            return "the file " + name + " is neither as before nor whole";
    }
    const bool complete = after.records == full.records && after.files == full.files;
    if (!complete && !told)
        return "nobody was told";
    if (action.stopsgrowth && !growthstate.running)
        growthstate.running = 1;
    else if (!complete && after.records != before.records)
        return "half done: " + before.records + "\nbecame " + after.records;

    // It goes on, and what is left of the failures does no harm to another try.
    kDisplay();
    if (action.stopsgrowth || after.records != before.records)
        return "";
    action.act();
    const State again = TakeState();
    if (again.records != full.records)
        return "another try gives other records";
    for (const auto &[name, content] : full.files)
        if (again.files.at(name) != content)
            return "another try gives another file " + name;
    return "";
}

// Runs `work` in a process of its own, with its standard error in a file; returns what it returns, or how the
// process ended.
static std::string InAProcess(const std::function<std::string()> &work)
{
    int ends[2];
    if (pipe(ends) != 0)
        return "no pipe";
    fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        FILE *errors = tmpfile();
        dup2(fileno(errors), STDERR_FILENO);
        // What throws here must not go on as a second test program.
        const std::string answer = [&]() noexcept { return work(); }();
        _exit(write(ends[1], answer.data(), answer.size()) == static_cast<ssize_t>(answer.size()) ? 0 : 1);
    }
    close(ends[1]);
    std::string answer;
    char part[4096];
    for (ssize_t count = 1; (count = read(ends[0], part, sizeof part)) > 0;)
        answer.append(part, static_cast<size_t>(count));
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return status == 0 ? answer : answer + " ended with status " + std::to_string(status);
}

static void EmptyDirectory()
{
    for (const auto &entry : fs::directory_iterator("."))
        fs::remove(entry.path());
    std::ofstream("saved") << "what was there before";
}

TEST(FailingMemory, NothingIsLostHalfDoneOrHidden)
{
    const TemporaryDirectory inputdirectory;
    const fs::path inputs = inputdirectory.path;
    std::ofstream ascii(inputs / "ascii.stl");
    std::ofstream binary(inputs / "binary.stl", std::ios::binary);
    std::ofstream seedfile(inputs / "roots.txt");
    ascii << "solid\n";
    binary << std::string(80, ' ') << std::string("\x14\0\0\0", 4);
    for (int i = 0; i < 20; i++) {
        ascii << "outer loop\nvertex 0 0 " << i << "\nvertex 9 0 0\nvertex 0 9 0\n";
        seedfile << i << " 2 3\n";
        for (int k = 0; k < 12; k++) {
            const float value = static_cast<float>(i * k % 7 - 3);
            binary.write(reinterpret_cast<const char *>(&value), 4);
        }
        binary << "  ";
    }
    ascii.close();
    binary.close();
    seedfile.close();
    std::ofstream(inputs / "empty.txt").close();
    fs::copy_file(inputs / "binary.stl", inputs / "short.stl");
    fs::resize_file(inputs / "short.stl", 400); // its last faces are repeated
    const TemporaryDirectory directory;

    long tried = 0;
    for (const Action &action : ListActions(inputs)) {
        EmptyDirectory();
        const std::string run = InAProcess([&] {
            PrepareRun();
            FailAllocations(0, false);
            action.act();
            const long count = EndOfFailures();
            return std::to_string(count) + "\n" + TakeState().records;
        });
        const long allocations = atol(run.c_str());
        State full = {run.substr(run.find('\n') + 1), {}};
        for (const auto &entry : fs::directory_iterator("."))
            full.files[entry.path().filename()] = ReadWhole(entry.path());
        for (long k = 1; k <= allocations; k++) {
            for (const bool on : {false, true}) {
                EmptyDirectory();
                const std::string fault = InAProcess([&] {
                    PrepareRun();
                    const State before = TakeState();
                    ForgetCalls();
                    FailAllocations(k, on);
                    action.act();
                    EndOfFailures();
                    const bool told =
                        CountCalls("fl_show_message") > 0 || fs::file_size("/proc/self/fd/2") > 0;
                    return Judge(action, before, full, told);
                });
                EXPECT_EQ(fault, "") << action.name << ": allocation " << k << " of " << allocations
                                     << (on ? " and all after it" : "");
                tried++;
            }
        }
    }
    printf("%ld failures\n", tried);
    EXPECT_GT(tried, 500);
}

TEST(FailingMemory, GrowthStopsAndKeepsWhatHasGrown)
{
    StartAfresh();
    Grow(IterateSystem, 50, 1000000);
    const unsigned long long hash = HashParticles(50);
    testing::internal::CaptureStderr();
    FailAllocations(1, true);
    for (int i = 0; growthstate.running && i < 1000000; i++)
        IterateSystem();
    for (int i = 0; i < 20000; i++)
        IterateSystem(); // no second message
    EndOfFailures();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Out of memory: growth stopped at 50 particles\n");
    EXPECT_EQ(growthstate.running, 0);
    EXPECT_EQ(ncells, 50);
    EXPECT_EQ(HashParticles(50), hash);

    growthstate.running = 1;
    Grow(IterateSystem, 60, 1000000);
    EXPECT_EQ(ncells, 60);
}

// An index of so many particles has tables of more than a large page.
TEST(FailingMemory, SearchesAreTheSameWithoutMemoryForTables)
{
    StartAfresh();
    constexpr int kSide = 52;
    ncells = kSide * kSide * kSide;
    ASSERT_TRUE(ResizeArray(&cells, ncells));
    for (int i = 0; i < ncells; i++)
        cells[i] = {3.0 * Vector{i % kSide - 25.0, i / kSide % kSide - 25.0, i / kSide / kSide - 25.0}, 0, -1,
                    0};
    growthstate.radius = 150;
    constexpr int kNear = 70000;
    growthstate.pos = cells[kNear].p + Vector{0.5, 0.5, 0.5};
    long tried = 0;
    for (long k = 1; k <= tried + 1; k++) {
        FreeNeighbourIndex();
        FailAllocations(k, false);
        const int partner = FindPartner();
        tried = EndOfFailures();
        ASSERT_EQ(partner, kNear) << k;
    }
    EXPECT_GT(tried, 40);
}

// The flows of an aggregate once more, in the order in which its particles came. Returns the hash of all.
static unsigned long long AddFlowsAnew(bool deferred, bool fails)
{
    const int all = ncells;
    for (int i = 0; i < all; i++)
        cells[i].weight = 0;
    ForgetFlows();
    {
        std::optional<DeferredFlows> flows;
        ncells = growthstate.nroots;
        if (deferred)
            flows.emplace();
        if (fails)
            FailAllocations(1, true);
        while (ncells < all) {
            ncells++;
            AddFlowOfNewest();
        }
    }
    if (fails) {
        EXPECT_GT(EndOfFailures(), 0);
    }
    return HashParticles(all);
}

TEST(FailingMemory, FlowsAreTheSameWithoutMemoryForPaths)
{
    StartAfresh();
    growthstate.roottype = kRootRingX;
    growthstate.nroots = 3;
    ASSERT_TRUE(RestartFromRoots());
    Grow(IterateSystem, 500, 10000000);
    const unsigned long long hash = HashParticles(500);
    for (const bool held : {false, true})
        for (const bool fails : {false, true})
            EXPECT_EQ(AddFlowsAnew(held, fails), hash) << held << fails;
}
