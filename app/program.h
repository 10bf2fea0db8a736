#pragma once

// Starts the program and runs it until the user quits: defaults, switches, toolkits, window, callbacks, main
// loop.
void RunProgram(int argc, char **argv);

// The first half of that: all records as they are before the first switch is read.
void PrepareRecords();

// The second half: the window, with the records as they are. `ask`, where there is one, asks the user something at the start.
void RunWindow(int argc, char **argv, void (*ask)(int));
