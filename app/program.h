#pragma once

// Starts the program and runs it until the user quits: defaults, switches, toolkits, window, callbacks, main
// loop.
void RunProgram(int argc, char **argv);
