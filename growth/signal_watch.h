#pragma once

// Calls `look` five times a second from now on: while the main loop runs, hidden window or not, and while a dialog of the
// other toolkit stands there. `close` is called when the user closes the main window, `end` where the program ends.
void StartSignalWatch(void (*look)(), void (*close)(), void (*end)());
