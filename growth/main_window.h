// The main window as a window manager sees it: what GLUT, which makes the window, and XForms, which knows
// nothing of it, leave unsaid.

#pragma once

#include <forms.h>

// Gives the main window its class and icon, and makes it the owner of the dialogs to come: they stay above it
// and get the keyboard. Call right after the window has been made.
void IntroduceMainWindow();

// Makes the main window the owner of a panel that has just been shown, and keeps the panel, which has no
// title, out of the taskbar.
void OwnPanel(FL_FORM *form);
