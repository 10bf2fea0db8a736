#pragma once

// Calls `poll` five times a second from now on: while the main loop runs, hidden window or not, and while a dialog of the
// other toolkit is open. `onclose` is called when the user closes the main window, `onexit` when the program ends.
void StartMainLoopTimer(void (*poll)(), void (*onclose)(), void (*onexit)());
