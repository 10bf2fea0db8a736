// Properties and events of the main window that need Xlib: GLUT makes the window but does not set them, and XForms
// does not know the window.

#pragma once

#include <forms.h>

// Gives the main window its class and icon, and makes it the owner of all later dialogs, so that these stay above it
// and get the keyboard. Call right after the window has been made.
void SetWindowProperties();

// Makes the main window the owner of a panel that has just been shown, puts the panel in front and keeps it out of
// the taskbar.
void OwnPanel(FL_FORM *form);

// Whether user input is waiting: in the main window or its menus a key, a button, a drag, a movement within a menu,
// or a request to close the window; with `panels`, any event of a panel.
bool IsInputWaiting(bool panels);

// Waits at most `seconds` seconds for an event of the main window or, with `panels`, of a panel. Returns early when a
// signal comes.
void WaitForEvent(double seconds, bool panels);

// Closes the open menu by sending the main window a click outside of the menu.
void CloseMenu();
