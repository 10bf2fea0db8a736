#include "toolkit/wait_cursor.h"

#include <GL/glut.h>
#include <forms.h>

#include "toolkit/control_panel.h"

static void SetCursors(int window, int panels);

static bool leftout = false;

void DisableWaitCursors()
{
    leftout = true;
}

WaitCursor::WaitCursor() : old(leftout ? 0 : glutGet(GLUT_WINDOW_CURSOR))
{
    SetCursors(GLUT_CURSOR_WAIT, FL_BUSY_CURSOR);
}

WaitCursor::~WaitCursor()
{
    SetCursors(old, FL_DEFAULT_CURSOR);
}

// Sends the change to the display at once: the work that follows does not.
static void SetCursors(int window, int panels)
{
    if (leftout)
        return;
    glutSetCursor(window);
    glutGet(GLUT_WINDOW_X); // asks the display, and so sends what waits
    SetPanelCursors(panels);
    fl_update_display(0);
}
