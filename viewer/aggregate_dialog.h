// Opening and saving aggregate files in the window.

#pragma once

#include <string>

#include "archive/aggregate_file.h"

// The main window's title, but for what ShowFileInTitle puts before it.
constexpr const char *kTitle = "Diffusion Limited Aggregation";

// What the window's run has besides the global records.
extern RunRecord windowrun;

// The same with the camera as it stands.
RunRecord DescribeWindowRun();

// Makes a stored run the window's: paused, and the whole of it in view unless its camera was turned in a window.
void ShowAggregate(StoredAggregate stored);

// The file that the window has opened or saved last, which its title names; empty without one.
extern std::string windowfile;

// Makes the view window's title name the file, and say whether there are particles that are not in it.
void ShowFileInTitle();

// Asks for an aggregate file, and about unsaved particles, and shows it. A fault is told in a message box, and the run stays
// as it is.
void OpenAggregate();

// Asks for a file, and before it replaces one, and writes the run to it; a name without the ending .h5 gets that of
// aggregate files. A fault is told in a message box. Returns whether the run is saved.
bool SaveAggregate();

// Where the view window has unsaved particles, asks whether to save them first, to discard them, or not to go on. Returns
// whether to go on: they are saved or discarded, or there are none.
bool AskToGoOn();

// The same where the user closes the window, which cannot be stopped: particles are saved or discarded. Asks nothing where
// the window closes because the program ends.
void AskBeforeClosing();

// Shows the newest rescue file of the current directory, where there is one and the user wants it.
void OfferRescue();
