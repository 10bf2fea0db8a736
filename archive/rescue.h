// Rescue files: if the program ends other than by Quit or by closing its window, by a signal or a lost display for
// example, the aggregate is saved first.

#pragma once

#include <string>
#include <vector>

#include "archive/aggregate_file.h"

// Start of the names of rescue files
constexpr const char *kRescueName = "sarkelo-rescue-";

// Turns the rescue on. `describe` returns the RunRecord to save with the aggregate. Signals that end the program
// (base/end_signals.h) are noted from now on, and carried out by HandlePendingSignal.
void ArmRescue(RunRecord (*describe)());

// If the rescue is on and particles are unsaved, writes the aggregate to a new file
// sarkelo-rescue-DATE-TIME.sarkelo.h5 and turns the rescue off. The file is in the first directory that can be
// written: the current one, $HOME, $TMPDIR or /tmp. Prints the command that opens it, or why the aggregate could not
// be saved, on standard error.
void RescueAggregate();

// Writes the run to STEM.sarkelo.h5 in the first of the folders that can be written, and sets *path to that file. An
// existing file is never replaced: the name becomes STEM-2.sarkelo.h5 and so on. The fault has each folder's reason.
Fault WriteRescue(const std::vector<std::string> &folders, const std::string &stem, const RunRecord &run,
                  std::string *path);

// Turns the rescue off, because the user ends the program.
void DisarmRescue();

// Whether the rescue is on
bool IsRescueArmed();

// Records that the aggregate has just been opened or saved: a file has all of it.
void MarkAggregateSaved();

// Whether the aggregate has grown beyond its roots and is not the one that was last marked as saved
bool HasUnsavedParticles();

// If a signal has been noted, rescues the aggregate and ends the program by the same signal. Call this several times
// a second, at points where nothing is changing the global records.
void HandlePendingSignal();
