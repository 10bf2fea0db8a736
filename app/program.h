#pragma once

// Starts the program and runs it until the user quits: defaults, switches, toolkits, window, callbacks, main
// loop.
void RunProgram(int argc, char **argv);

// The first half of that: all records as they are before the first switch is read.
void PrepareRecords();

// The second half: the window, with the records as they are. `opened` is called when it is there.
void RunWindow(int argc, char **argv, void (*opened)());
