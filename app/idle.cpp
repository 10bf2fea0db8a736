#include "app/idle.h"

#include <GL/glut.h>

#include "app/panels.h"
#include "geom/clock.h"
#include "growth/generators.h"
#include "growth/growth_step.h"
#include "growth/state.h"
#include "viewer/camera.h"

constexpr int kStepsPerCall = 100;
// Seconds after a redisplay from which the panels are polled.
constexpr double kPanelDelay = 0.02;
// Autospin units per radian.
constexpr double kSpinUnits = 200;

static void Grow();

void HandleIdle()
{
    static double redisplayed = -1;

    Grow();
    if (redisplayed < 0)
        redisplayed = GetRunTime();
    const double now = GetRunTime();
    if (now - redisplayed > kPanelDelay)
        PollPanels();
    if (now - redisplayed > 1 / options.framerate) {
        glutPostRedisplay();
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
