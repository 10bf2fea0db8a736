// The main window as a window manager sees it: what GLUT, which makes the window, and XForms, which knows
// nothing of it, leave unsaid.

#pragma once

#include <forms.h>

// Gives the main window its class and icon, and makes it the owner of the dialogs to come: they stay above it
// and get the keyboard. Call right after the window has been made.
void SetWindowProperties();

// Makes the main window the owner of a panel that has just been shown, puts the panel in front and keeps it out of
// the taskbar.
void OwnPanel(FL_FORM *form);

// Whether something that the user has done waits: in the main window or its menus a key or a button, a drag, a movement
// within a menu, a request to close the window; with `panels`, anything in a panel.
bool IsInputWaiting(bool panels);

// Waits until something happens in a window or, with `panels`, in a panel, at most so many seconds. Returns early when a
// signal comes.
void WaitForEvent(double seconds, bool panels);

// Closes the menu that is open, as a click beside it does.
void CloseMenu();
