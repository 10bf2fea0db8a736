#include "app/idle.h"

#include <GL/glut.h>

#include "app/panels.h"
#include "geom/clock.h"
#include "growth/generators.h"
#include "growth/growth_step.h"
#include "growth/state.h"
#include "viewer/camera.h"
#include "viewer/statistics.h"

constexpr int kStepsPerCall = 100;
// Seconds after a redisplay from which the panels are polled.
constexpr double kPanelDelay = 0.02;
// Autospin units per radian.
constexpr double kSpinUnits = 200;

static void Grow();

void HandleIdle()
{
    static double redisplayed = -1;
    static bool asked = false; // for a redisplay, by the call before this one

    Grow();
    if (options.boxcountrequest)
        CalcBoxCount(0, 0);
    if (redisplayed < 0)
        redisplayed = GetRunTime();
    const double now = GetRunTime();
    // Counting goes a box a call, and its boxes can take longer to draw than the frame rate allows: the time
    // of the frame is left out then, or each frame would be followed by the next after a single box.
    if (asked && options.boxcountrequest)
        redisplayed = now;
    asked = false;
    if (now - redisplayed > kPanelDelay)
        PollPanels();
    if (now - redisplayed > 1 / options.framerate) {
        glutPostRedisplay();
        asked = true;
        redisplayed = now;
        RotateCamera(options.autospin / kSpinUnits, 0, 0);
    }
}

void HandleVisibility(int state)
{
    glutIdleFunc(state == GLUT_VISIBLE ? HandleIdle : nullptr);
}

static void Grow()
{
    if (!growthstate.running || options.boxcountrequest)
        return;
    const HeldGenerators held;
    for (int i = 0; i < kStepsPerCall; i++)
        IterateSystem();
}
