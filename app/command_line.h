#pragma once

// Reads the program's switches into options and camera; arguments that are no switches are ignored. "-h" prints the
// usage text and ends the program with status -1 at once.
void ReadSwitches(int argc, char **argv);

// Prints the usage text to standard error; `path` is the program's.
void GiveUsage(const char *path);
