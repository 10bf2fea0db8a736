#include "growth/signal_watch.h"

#include <cstdlib>

#include <GL/freeglut.h>
#include <forms.h>

constexpr int kMilliseconds = 200;

static void (*looking)() = nullptr;

static void LookInMainLoop(int)
{
    looking();
    glutTimerFunc(kMilliseconds, LookInMainLoop, 0);
}

static void LookInDialog(int, void *)
{
    looking();
    fl_add_timeout(kMilliseconds, LookInDialog, nullptr);
}

void StartSignalWatch(void (*look)(), void (*close)(), void (*end)())
{
    looking = look;
    LookInMainLoop(0);
    LookInDialog(0, nullptr);
    glutCloseFunc(close);
    // Before the toolkit closes the window in turn, which was registered earlier.
    atexit(end);
}
