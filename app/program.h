#pragma once

// Runs the program sarkelo until the user quits: PrepareRecords, the command line's switches, and RunWindow.
void RunProgram(int argc, char **argv);

// Sets all global records to their defaults.
void PrepareRecords();

// Starts the toolkits, opens the window, and runs the main loop with the current records. `askatstart` is called by a timer
// once the window has been drawn, to ask the user a question; nullptr: no question.
void RunWindow(int argc, char **argv, void (*askatstart)(int));
