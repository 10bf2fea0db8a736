#include "toolkit/wait_cursor.h"

#include <GL/glut.h>
#include <forms.h>

#include "toolkit/control_panel.h"

static void SetCursors(int window, int panels);

static bool disabled = false;

void DisableWaitCursors()
{
    disabled = true;
}

WaitCursor::WaitCursor() : old(disabled ? 0 : glutGet(GLUT_WINDOW_CURSOR))
{
    SetCursors(GLUT_CURSOR_WAIT, FL_BUSY_CURSOR);
}

WaitCursor::~WaitCursor()
{
    SetCursors(old, FL_DEFAULT_CURSOR);
}

// Sends the change to the display at once, since nothing is sent during the work that follows.
static void SetCursors(int window, int panels)
{
    if (disabled)
        return;
    glutSetCursor(window);
    glutGet(GLUT_WINDOW_X); // a query, which sends the waiting requests first
    SetPanelCursors(panels);
    fl_update_display(0);
}
