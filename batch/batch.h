// sarkelo-grow: grows an aggregate as its command line and recipe say, and writes the results.

#pragma once

#include "base/fault.h"

// Returns the exit status of the program: 0, a FaultKind, or 128 + the signal that ended growth. Each fault is
// reported in one line on standard error.
int RunBatch(int argc, char **argv);
