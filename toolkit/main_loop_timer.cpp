#include "toolkit/main_loop_timer.h"

#include <cstdlib>

#include <GL/freeglut.h>
#include <forms.h>

constexpr int kMilliseconds = 200;

static void (*polling)() = nullptr;

static void PollInMainLoop(int)
{
    polling();
    glutTimerFunc(kMilliseconds, PollInMainLoop, 0);
}

static void PollInDialog(int, void *)
{
    polling();
    fl_add_timeout(kMilliseconds, PollInDialog, nullptr);
}

void StartMainLoopTimer(void (*poll)(), void (*onclose)(), void (*onexit)())
{
    polling = poll;
    PollInMainLoop(0);
    PollInDialog(0, nullptr);
    glutCloseFunc(onclose);
    // Functions run in reverse order at exit: this one before that of GLUT, which closes the window.
    atexit(onexit);
}
