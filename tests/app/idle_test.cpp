// The idle driver against a clock of the test's own: what it does when, with frames of different lengths.

#include "app/idle.h"

#include <csignal>
#include <cstdlib>

#include <GL/glut.h>
#include <gtest/gtest.h>

#include "analysis/box_count.h"
#include "archive/rescue.h"
#include "fakes/recorder.h"
#include "geom/clock.h"
#include "golden.h"
#include "growth/camera_home.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"
#include "panels.h"
#include "temporary_file.h"
#include "toolkit/callback.h"
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

// A second of idle calls, a millisecond each, and of the frames that they ask for, each of which takes `took`
// seconds. Prints when frames are asked for, and how often panels are polled before each.
static std::string RunASecond(double took)
{
    std::ostringstream text;
    HandleIdle();
    fakeclock += 10; // whatever was before is long ago
    growthstate.stepcount = 0;
    const double start = fakeclock;
    int polls = 0;
    while (fakeclock < start + 1) {
        ForgetCalls();
        HandleIdle();
        fakeclock += 0.001;
        polls += CountCalls("fl_check_forms");
        if (CountCalls("glutPostRedisplay") == 0)
            continue;
        text << ' ' << fakeclock - start << '(' << polls << ')';
        polls = 0;
        if (took > 0) {
            lastframe = {fakeclock, fakeclock + took};
            fakeclock += took;
        }
    }
    return text.str() + "\n";
}

TEST(Idle, PacesFramesPanelsAndGrowthAsRightBefore)
{
    CreatePanelsOnce();
    std::ostringstream text;
    text.precision(4);
    for (const double took : {0.0, 0.005, 0.04, 0.3}) {
        for (const char *what :
             {"grows", "grows, panel", "pauses, panel", "counts, panel", "fewer frames, panel"}) {
            const auto is = [=](const char *word) {
                return std::string(what).find(word) != std::string::npos;
            };
            StartAfresh();
            CameraHome();
            options.autospin = 20;
            options.framerate = is("fewer") ? 10 : 30;
            growthstate.stickiness = 0; // every step counts up stepcount
            growthstate.running = !is("pauses");
            growthstate.radius = 1e6; // many boxes
            if (is("counts"))
                StartBoxCount();
            settingformvisible = is("panel");
            text << what << ", frames of " << took << " s:" << RunASecond(took) << "  "
                 << growthstate.stepcount << " steps, view " << camera.vd.x << ' ' << camera.vd.y << '\n';
            settingformvisible = options.boxcountrequest = 0;
        }
    }
    ExpectGolden("idle.txt", text.str());
}

// A frame, and the branches that it draws.
static int DrawFrame()
{
    ForgetCalls();
    HandleDisplay();
    const int drawn = CountCalls("glVertex3f") / 2;
    fakeclock = GetRunTime() + 0.001;
    ForgetCalls();
    return drawn;
}

TEST(Idle, FramesStayQuickWhileTheCameraMoves)
{
    StartAfresh();
    CameraHome();
    camera.stereo = kStereoNone;
    options.dlamode = kAggregateLines;
    options.showextras = options.showinfo = 0;
    Grow(IterateSystem, 10000, 100000000);
    const int all = ncells - 1;
    callcost = 1e-5; // 30,000 calls: 0.3 s
    ASSERT_EQ(DrawFrame(), all);
    TurnCamera(0.1);
    EXPECT_EQ(DrawFrame(), all) << "the window of sarkelo";
    KeepFramesQuick();
    DrawFrame();
    fakeclock += 1;
    EXPECT_EQ(DrawFrame(), all) << "at rest";
    for (int k = 0; k < 3; k++) {
        TurnCamera(0.1);
        const double start = fakeclock;
        const int drawn = DrawFrame();
        EXPECT_LT(fakeclock - start, 0.11);
        EXPECT_GT(drawn, all / 5);
        EXPECT_LT(drawn, all / 2);
    }
    fakeclock += 0.3;
    EXPECT_LT(DrawFrame(), all / 2) << "0.3 s after the last turn";
    fakeclock += 0.2;
    EXPECT_EQ(DrawFrame(), all) << "at rest again";
    callcost = 0;
    DrawFrame();
}

TEST(Idle, TheViewWindowDrawsOnChangeOnlyAndSleeps)
{
    StartAfresh();
    CameraHome();
    options.dlamode = kAggregateLines;
    HandleReshape(8, 6);
    growthstate.radius = 1e6; // many boxes
    growthstate.stickiness = 0;
    viewwindow = true;
    const struct {
        const char *name;
        std::function<void()> change;
        int frames;  // in the second after it
        bool sleeps; // in that second
    } cases[] = {
        {"nothing", [] {}, 0, true},
        {"a key", [] { Guarded<HandleKeyboard>('+', 0, 0); }, 1, true},
        {"a worked panel", [] { settingformvisible = 1, Type(settingform->seed, "5"); }, 1, true},
        {"a turning camera", [] { options.autospin = 1; }, 29, true},
        {"a recording", [] { options.recordframes = 1; }, 29, true},
        {"statistics", [] { DrawStatistics(10); }, 11, true},
        {"a box count", [] { StartBoxCount(); }, 29, false},
        {"walkers that do not stick", [] { growthstate.running = 1; }, 0, false},
        {"their number on the screen", [] { growthstate.running = options.showinfo = 1; }, 29, false},
        {"growth", [] { StartAfresh(), growthstate.running = 1; }, 29, false},
    };
    const TemporaryDirectory captures;
    CreatePanelsOnce();
    for (const auto &[name, change, frames, sleeps] : cases) {
        options.showinfo = options.showextras = growthstate.running = 0;
        for (int k = 0; k < 600 && IsFrameWanted(); k++)
            HandleDisplay();
        ForgetCalls();
        fakeworked = nullptr;
        change();
        int posted = 0, slept = 0;
        for (const double end = fakeclock + 1; fakeclock < end; fakeclock += 0.001) {
            ForgetCalls();
            HandleIdle();
            slept += CountCalls("WaitForEvent");
            posted += CountCalls("glutPostRedisplay");
            if (CountCalls("glutPostRedisplay") > 0)
                HandleDisplay();
        }
        EXPECT_NEAR(posted, frames, frames > 1 ? 1 : 0) << name;
        EXPECT_EQ(slept > 0, sleeps) << name;
        options.autospin = options.recordframes = options.boxcountrequest = settingformvisible = 0;
    }
}

TEST(Idle, ALongFrameIsBrokenOffForInputAndSignals)
{
    StartAfresh();
    CameraHome();
    options.dlamode = kAggregateLines;
    options.showextras = options.showinfo = 0;
    HandleReshape(8, 6);
    Grow(IterateSystem, 10000, 1000000000);
    const int all = ncells - 1;
    const auto draw = [](double cost) {
        fakeclock += 10;
        callcost = cost;
        const int drawn = DrawFrame();
        callcost = 0;
        return drawn;
    };
    viewwindow = true;
    fakeinput = true;
    const TemporaryDirectory captures;
    EXPECT_EQ(draw(1e-7), all) << "a short frame";
    EXPECT_LT(draw(1e-5), all / 2);
    EXPECT_TRUE(IsFrameWanted()) << "the one that was broken off";
    options.recordframes = 1;
    EXPECT_EQ(draw(1e-5), all) << "a recorded frame";
    TurnCamera(0.1);
    KeepFramesQuick();
    EXPECT_EQ(draw(1e-5), all) << "a recorded frame while the camera moves";
    EXPECT_EQ(CountFiles(), 2);
    const auto endbysignal = [&] {
        ArmRescue([] { return RunRecord(); });
        raise(SIGTERM);
        exit(draw(1e-5) < all / 2 && CountFiles() == 2);
    };
    EXPECT_EXIT(endbysignal(), testing::ExitedWithCode(1), "") << "not even captured";
    options.recordframes = 0;
    fakeinput = false;
    EXPECT_EQ(draw(1e-5), all);
    EXPECT_FALSE(IsFrameWanted());
}

TEST(Idle, NothingGrowsWhileTheWindowIsHidden)
{
    HandleVisibility(GLUT_NOT_VISIBLE);
    EXPECT_EQ(registered.idle, nullptr);
    HandleVisibility(GLUT_VISIBLE);
    EXPECT_NE(registered.idle, nullptr);
}
