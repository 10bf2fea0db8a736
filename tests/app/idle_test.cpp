// The idle callback against a clock of the test's own: what it does when, with frames of different lengths.

#include "app/idle.h"

#include <array>
#include <csignal>

#include <GL/glut.h>
#include <gtest/gtest.h>

#include "analysis/box_count.h"
#include "archive/rescue.h"
#include "geom/clock.h"
#include "golden.h"
#include "growth/camera_home.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"
#include "panels.h"
#include "temporary_file.h"
#include "viewer/aggregate_dialog.h"
#include "viewer/camera.h"
#include "viewer/display.h"
#include "viewer/input.h"
#include "viewer/overlays.h"

static double fakeclock = 1000;
static double callcost = 0; // seconds that a recorded call takes

// Takes the place of the program's: the linker looks into the library for what is not there yet.
double GetRunTime()
{
    return fakeclock + callcost * static_cast<double>(calls.size());
}

static void Prepare()
{
    StartAfresh();
    CameraHome();
    CreatePanelsOnce();
    camera.stereo = kStereoNone;
    HandleReshape(8, 6);
    options.dlamode = kAggregateLines;
    options.autospin = options.recordframes = options.boxcountrequest = settingformvisible = 0;
    growthstate.stickiness = 0; // every step counts up stepcount
    growthstate.radius = 1e6;   // many boxes
    callcost = 0;
}

TEST(Idle, PacesFramesPanelsAndGrowthAsRightBefore)
{
    std::ostringstream text;
    text.precision(4);
    for (int k = 0; k < 20; k++) {
        const double took = std::array{0.0, 0.005, 0.04, 0.3}[static_cast<size_t>(k / 5)];
        enum {
            kGrows,
            kGrowsWithPanel,
            kPauses,
            kCounts,
            kFewerFrames
        } what = static_cast<decltype(what)>(k % 5);
        Prepare();
        options.autospin = 20;
        options.framerate = what == kFewerFrames ? 10 : 30;
        growthstate.running = what != kPauses;
        if (what == kCounts)
            StartBoxCount();
        settingformvisible = what != kGrows;
        HandleIdle();
        fakeclock += 10; // whatever was before is long ago
        growthstate.stepcount = 0;
        text << std::array{"grows", "grows, panel", "pauses, panel", "counts, panel",
                           "fewer frames, panel"}[what]
             << ", frames of " << took << " s:";
        const double start = fakeclock;
        for (int polls = 0; fakeclock < start + 1;) {
            ForgetCalls();
            HandleIdle();
            fakeclock += 0.001;
            polls += CountCalls("fl_check_forms");
            if (CountCalls("glutPostRedisplay") == 0)
                continue;
            text << ' ' << fakeclock - start << '(' << std::exchange(polls, 0) << ')';
            if (took > 0)
                lastframe = {fakeclock, fakeclock + took};
            fakeclock += took;
        }
        text << "\n  " << growthstate.stepcount << " steps, view " << camera.vd.x << ' ' << camera.vd.y
             << '\n';
    }
    ExpectGolden("idle.txt", text.str());
    Prepare();
    growthstate.steptotal = 0; // a run that has just started
    windowrun.seconds = 1000;
    HandleIdle();
    EXPECT_TRUE(windowrun.seconds > 0 && windowrun.seconds < 0.5) << windowrun.seconds;
}

TEST(Idle, TheViewWindowDrawsOnChangeOnlyAndSleeps)
{
    const std::pair<const char *, std::function<void()>> cases[] = {
        {"nothing", [] {}},
        {"a key", [] { Guarded<HandleKeyboard>('+', 0, 0); }},
        {"a worked panel", [] { settingformvisible = 1, Type(settingform->seed, "5"); }},
        {"a turning camera", [] { options.autospin = 1; }},
        {"a recording", [] { options.recordframes = 1; }},
        {"statistics", [] { DrawStatistics(10); }},
        {"a box count", [] { StartBoxCount(); }},
        {"walkers that do not stick", [] { growthstate.running = 1; }},
        {"their number on the screen", [] { growthstate.running = options.showinfo = 1; }},
        {"growth", [] { StartAfresh(), growthstate.running = 1; }},
    };
    viewwindow = true;
    const TemporaryDirectory captures;
    std::ostringstream text;
    for (const auto &[name, change] : cases) {
        Prepare();
        options.showinfo = options.showextras = growthstate.running = 0;
        for (int k = 0; k < 600 && IsFrameWanted(); k++)
            HandleDisplay();
        change();
        int posted = 0;
        double slept = 0; // at most so long at once
        for (const double end = fakeclock + 1; fakeclock < end; fakeclock += 0.001) {
            ForgetCalls();
            HandleIdle();
            for (const Call &call : CallsOf("WaitForEvent"))
                slept = std::max(slept, call.args[0]);
            posted += CountCalls("glutPostRedisplay");
            if (CountCalls("glutPostRedisplay") > 0)
                HandleDisplay();
        }
        text << name << ": " << posted << " frames, sleeps of " << std::round(1000 * slept) << " ms\n";
    }
    Prepare();
    ExpectGolden("idle_view.txt", text.str());
}

// The branches that a frame draws while every call takes so long.
static int DrawFrame(double cost)
{
    ForgetCalls();
    callcost = cost;
    HandleDisplay();
    fakeclock = GetRunTime() + 0.001;
    callcost = 0;
    return CountCalls("glVertex3f") / 2;
}

TEST(Idle, LongFramesAreThinnedForMovementAndBrokenOffForInput)
{
    Prepare();
    options.showextras = options.showinfo = 0;
    growthstate.stickiness = 100;
    growthstate.radius = 0;
    Grow(IterateSystem, 10000, 1000000000);
    const int all = ncells - 1;
    const double cost = 1e-5; // 30,000 calls: 0.3 s
    const TemporaryDirectory captures;
    EXPECT_EQ(DrawFrame(cost), all);
    TurnCamera(0.1);
    EXPECT_EQ(DrawFrame(cost), all) << "the window of sarkelo";
    viewwindow = true;
    fakeinput = true;
    fakeclock += 10;
    EXPECT_EQ(DrawFrame(1e-7), all) << "a short frame";
    EXPECT_LT(DrawFrame(cost), all / 2);
    EXPECT_TRUE(IsFrameWanted()) << "the one that was broken off";
    fakeinput = false;
    EXPECT_EQ(DrawFrame(cost), all);
    EXPECT_FALSE(IsFrameWanted());

    KeepFramesQuick();
    fakeclock += 10;
    double moved = 0;
    for (int k = 0; k < 3; k++) {
        if (k == 0)
            ZoomIn();
        else
            TurnCamera(0.1);
        moved = fakeclock;
        const int drawn = DrawFrame(cost);
        EXPECT_LT(fakeclock - moved, 0.11);
        EXPECT_TRUE(drawn > all / 5 && drawn < all / 2) << drawn;
    }
    fakeclock = moved + 0.3;
    EXPECT_LT(DrawFrame(cost), all / 2);
    fakeclock = moved + 0.49;
    EXPECT_FALSE(IsFrameWanted());
    fakeclock = moved + 0.51;
    EXPECT_TRUE(IsFrameWanted());
    EXPECT_EQ(DrawFrame(cost), all) << "at rest again";
    options.dlamode = kAggregateTubes;
    DrawFrame(cost);
    TurnCamera(0.1);
    EXPECT_LT(DrawFrame(cost), all / 2);
    EXPECT_EQ(CallsOf("glBegin").at(0).args[0], GL_LINES) << "tubes while the camera moves";
    options.dlamode = kAggregateLines;

    options.recordframes = 1;
    fakeinput = true;
    TurnCamera(0.1);
    EXPECT_EQ(DrawFrame(cost), all) << "a recorded frame, whole while the camera moves and input waits";
    EXPECT_EQ(CountFiles(), 1);
    const auto endbysignal = [&] {
        ArmRescue([] { return RunRecord(); });
        raise(SIGTERM);
        exit(DrawFrame(cost) < all / 2 && CountFiles() == 1 ? 7 : 8);
    };
    EXPECT_EXIT(endbysignal(), testing::ExitedWithCode(7), "") << "not even captured";
    Prepare();
}
