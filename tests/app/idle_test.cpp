// The idle callback against a clock that the test sets.

#include "app/idle.h"

#include <GL/glut.h>
#include <gtest/gtest.h>

#include "analysis/box_count.h"
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

double GetRunTime() // in place of the program's
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

// What a second of idle calls does, 1 ms each, where a frame takes so many seconds.
static std::string RunForASecond(double took)
{
    int frames = 0, polls = 0;
    double slept = 0; // the longest sleep
    growthstate.stepcount = 0;
    for (const double end = fakeclock + 1; fakeclock < end; fakeclock += 0.001) {
        ForgetCalls();
        HandleIdle();
        polls += CountCalls("fl_check_forms");
        for (const Call &call : CallsOf("WaitForEvent"))
            slept = std::max(slept, call.args[0]);
        if (CountCalls("glutPostRedisplay") == 0)
            continue;
        frames++;
        HandleDisplay();
        if (took > 0)
            lastframe = {fakeclock, fakeclock + took};
        fakeclock += took;
    }
    std::ostringstream text;
    text.precision(4);
    text << frames << " frames, " << polls << " polls, " << growthstate.stepcount << " steps, view "
         << camera.vd.x << ", sleeps of " << std::round(1000 * slept) << " ms\n";
    return text.str();
}

TEST(Idle, PacesFramesPanelsAndGrowth)
{
    std::ostringstream text;
    for (const std::string what :
         {"grows", "grows, panel", "pauses, panel", "counts, panel", "10 frames, panel"})
        for (const double took : {0.0, 0.005, 0.04, 0.3}) {
            Prepare();
            options.autospin = 20;
            options.framerate = what == "10 frames, panel" ? 10 : 30;
            growthstate.running = what != "pauses, panel";
            if (what == "counts, panel")
                StartBoxCount();
            settingformvisible = what != "grows";
            HandleIdle();
            fakeclock += 10; // after all earlier frames
            text << what << ", frames of " << took << " s: " << RunForASecond(took);
        }
    ExpectGolden("idle.txt", text.str());
    growthstate.steptotal = 0; // a run that has just started
    windowrun.seconds = 1000;
    HandleIdle();
    EXPECT_LT(windowrun.seconds, 0.5);
}

TEST(Idle, TheViewWindowDrawsOnChangeOnlyAndSleeps)
{
    const std::pair<std::string, std::function<void()>> cases[] = {
        {"nothing", [] {}},
        {"a key", [] { Guarded<HandleKeyboard>('+', 0, 0); }},
        {"a panel", [] { settingformvisible = 1, Type(settingform->seed, "5"); }},
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
    std::string text;
    for (const auto &[name, change] : cases) {
        Prepare();
        options.showinfo = options.showextras = growthstate.running = 0;
        for (int k = 0; k < 600 && IsFrameWanted(); k++)
            HandleDisplay();
        change();
        text += name + ": " + RunForASecond(0);
    }
    Prepare();
    ExpectGolden("idle_view.txt", text);
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
    TurnCamera(0.1);
    EXPECT_EQ(DrawFrame(cost), all) << "the window of sarkelo";
    viewwindow = true;
    fakeinput = true;
    fakeclock += 10;
    EXPECT_EQ(DrawFrame(1e-7), all) << "a short frame";
    EXPECT_LT(DrawFrame(cost), all / 2);
    EXPECT_TRUE(IsFrameWanted()) << "after one that was broken off";
    fakeinput = false;
    EXPECT_EQ(DrawFrame(cost), all);
    EXPECT_FALSE(IsFrameWanted());

    KeepFramesQuick();
    fakeclock += 10;
    options.dlamode = kAggregateTubes; // lines while the camera moves
    DrawFrame(cost);
    ZoomIn();
    const double moved = fakeclock;
    const int drawn = DrawFrame(cost);
    EXPECT_LT(fakeclock - moved, 0.11);
    EXPECT_TRUE(drawn > all / 5 && drawn < all / 2) << drawn;
    EXPECT_EQ(CallsOf("glBegin").at(0).args[0], GL_LINES);
    options.dlamode = kAggregateLines;
    fakeclock = moved + 0.49;
    EXPECT_FALSE(IsFrameWanted());
    fakeclock = moved + 0.51;
    EXPECT_TRUE(IsFrameWanted());
    EXPECT_EQ(DrawFrame(cost), all) << "at rest again";
    options.recordframes = 1;
    fakeinput = true;
    TurnCamera(0.1);
    EXPECT_EQ(DrawFrame(cost), all) << "a recorded frame";
    Prepare();
}
