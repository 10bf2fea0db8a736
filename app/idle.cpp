#include "app/idle.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

#include <GL/glut.h>

#include "app/panels.h"
#include "base/processors.h"
#include "geom/clock.h"
#include "growth/growth_step.h"
#include "growth/parallel_growth.h"
#include "growth/state.h"
#include "toolkit/callback.h"
#include "toolkit/control_panel.h"
#include "toolkit/main_window.h"
#include "viewer/aggregate_dialog.h"
#include "viewer/camera.h"
#include "viewer/display.h"
#include "viewer/statistics.h"

// Growth of an idle call: steps, or the time of flights in seconds.
constexpr int kStepsPerCall = 100;
constexpr double kSecondsPerCall = 0.005;
// Seconds after a redisplay from which the panels are polled.
constexpr double kPanelDelay = 0.02;
// The longest sleep, in seconds. Timers of the panels can be late by so much.
constexpr double kLongestSleep = 0.05;
// Autospin units per radian.
constexpr double kSpinUnits = 200;

namespace
{
// The panels are due kPanelDelay seconds after `stamp`, and the next redisplay `period` seconds after it.
struct Pace {
    double stamp, period;
};
} // namespace

static bool IsAtWork();
static void Grow();
static Pace FindPace(double redisplayed);

void HandleIdle()
{
    static double redisplayed = -1;

    Grow();
    if (options.boxcountrequest)
        CalcBoxCount(0, 0);
    if (redisplayed < 0)
        redisplayed = GetRunTime();
    const double now = GetRunTime();
    const Pace pace = FindPace(redisplayed);
    if (now - pace.stamp > kPanelDelay)
        PollPanels();
    if (now - pace.stamp > pace.period &&
        (!viewwindow || (IsFrameWanted() && !IsInputWaiting(IsPanelShown())))) {
        glutPostRedisplay();
        redisplayed = now;
        RotateCamera(options.autospin / kSpinUnits, 0, 0);
    } else if (viewwindow && !IsAtWork()) {
        const double wait = IsFrameWanted() ? pace.stamp + pace.period - now : kLongestSleep;
        WaitForEvent(std::clamp(wait, 0.0, kLongestSleep), IsPanelShown());
    }
}

void HandleVisibility(int state)
{
    glutIdleFunc(state == GLUT_VISIBLE ? Guarded<HandleIdle, kRepeatedCallback> : nullptr);
}

// Whether growth or a box count runs between frames
static bool IsAtWork()
{
    return growthstate.running || options.boxcountrequest;
}

static void Grow()
{
    if (!growthstate.running || options.boxcountrequest)
        return;
    using Clock = std::chrono::steady_clock;
    const Clock::time_point start = Clock::now();
    if (growthstate.steptotal == 0)
        windowrun.seconds = 0; // the run has just started
    static const int threads = AvailableProcessors();
    if (growthstate.walk == kWalkFlights)
        GrowFlights({.seconds = kSecondsPerCall}, threads);
    else
        for (int left = kStepsPerCall; left > 0 && growthstate.running;)
            left -= IterateUntilStick(left);
    if (!growthstate.running)
        fprintf(stderr, "Out of memory: growth stopped at %d particles\n", ncells);
    windowrun.seconds += std::chrono::duration<double>(Clock::now() - start).count();
}

// Redisplays are due at the frame rate. If a frame takes longer than 1 / framerate, the next one would be due after
// only a hundred steps, or a single box of a box count. So growth or a count then gets as much time as the frame
// took.
static Pace FindPace(double redisplayed)
{
    const double took = lastframe.end - lastframe.start;
    const double period = 1 / options.framerate;
    if (IsAtWork() && took > period && lastframe.start >= redisplayed)
        return {lastframe.end, took};
    return {redisplayed, period};
}
