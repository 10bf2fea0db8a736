#pragma once

// From now on calls `poll` five times a second: while GLUT's main loop runs, even if the window is hidden, and while
// a dialog of XForms is open. `onclose` is called when the main window is closed, `onexit` when the program ends.
void StartMainLoopTimer(void (*poll)(), void (*onclose)(), void (*onexit)());
