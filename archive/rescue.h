// What ends the program: signals; and whatever does so other than its user keeps the aggregate first.

#pragma once

#include <string>
#include <vector>

#include "archive/aggregate_file.h"

// What the names of rescue files begin with.
constexpr const char *kRescueName = "sarkelo-rescue-";

// From now on the aggregate is to be kept. `describe` says what the run has besides the records. Signals that
// end the program (base/end_signals.h) are noted and wait for HandlePendingSignal.
void ArmRescue(RunRecord (*describe)());

// Where the aggregate is to be kept, and has unsaved particles, writes it to a new file sarkelo-rescue-DATE-TIME.sarkelo.h5
// in the current directory or, where that cannot be written, the home directory, that for temporary files, or /tmp, and
// prints on standard error the line that opens it again, or why it could not be kept; once.
void RescueAggregate();

// Writes the run to STEM.sarkelo.h5 in the first of the folders that takes it; where there is such a file already, to
// STEM-2.sarkelo.h5 and so on: none is ever replaced. Sets its path. The fault gives each folder's reason.
Fault WriteRescue(const std::vector<std::string> &folders, const std::string &stem, const RunRecord &run,
                  std::string *path);

// The user ends the program: nothing is kept.
void DisarmRescue();

// Whether the aggregate is to be kept, and has not been yet.
bool IsRescueArmed();

// The aggregate is in a file as it is now: it has just been opened or saved.
void MarkAggregateSaved();

// Whether the aggregate has more particles than roots and differs from what was last marked as saved.
bool HasUnsavedParticles();

// Where a signal has come, keeps the aggregate and ends the program by the same signal. Call several times a second
// from where the records are not being changed.
void HandlePendingSignal();
