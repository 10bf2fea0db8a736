// What ends the program: signals; and whatever does so other than its user keeps the aggregate first.

#pragma once

#include "archive/aggregate_file.h"

// Gives SIGHUP, SIGINT and SIGTERM a handler, with flags of sigaction. One that is ignored stays so, as nohup wants it.
void HandleEndSignals(void (*handler)(int), int flags = 0);

// From now on the aggregate is to be kept. `describe` says what the run has besides the records. SIGHUP, SIGINT and
// SIGTERM are noticed and wait for EndBySignal.
void PrepareRescue(RunRecord (*describe)());

// Where the aggregate is to be kept, and has unsaved particles, writes it to sarkelo-rescue-DATE-TIME.sarkelo.h5
// in the current directory or, where that cannot be written, the home directory, and tells on standard error the line
// that opens it again; once.
void KeepAggregate();

// The user ends the program: nothing is kept.
void LeaveAggregate();

// The aggregate is in a file as it is now: it has just been opened or saved.
void MarkAggregateSaved();

// Whether the aggregate has more particles than roots and differs from what was last marked as saved.
bool HasUnsavedParticles();

// Where a signal has come, keeps the aggregate and ends the program by the same signal. Call several times a second
// from where the records are not being changed.
void EndBySignal();
