// Whatever ends the program other than its user keeps the aggregate first.

#pragma once

#include "archive/aggregate_file.h"

// From now on the aggregate is to be kept. `describe` says what the run has besides the records. SIGHUP, SIGINT and
// SIGTERM are noticed (one that is ignored stays so) and wait for EndBySignal.
void PrepareRescue(RunRecord (*describe)());

// Where the aggregate is to be kept, and has more particles than roots, writes it to sarkelo-rescue-DATE-TIME.sarkelo.h5
// in the current directory or, where that cannot be written, the home directory, and tells on standard error the line
// that opens it again; once.
void KeepAggregate();

// The user ends the program: nothing is kept.
void LeaveAggregate();

// Where a signal has come, keeps the aggregate and ends the program by the same signal. Call several times a second
// from where the records are not being changed.
void EndBySignal();
