// sarkelo-grow: reads what is asked for, grows it, and writes what came of it.

#pragma once

#include "base/fault.h"

// Returns the status that the program ends with: 0, a FaultKind, or 128 and the signal that ended growth. Each
// fault is told in one line on standard error.
int RunBatch(int argc, char **argv);
