// Opening and saving aggregate files in the window.

#pragma once

#include <string>

#include "archive/aggregate_file.h"

// The main window's title; ShowFileInTitle puts a file name before it.
constexpr const char *kTitle = "Diffusion Limited Aggregation";

// The window's run: what is stored of it besides the global records
extern RunRecord windowrun;

// A copy of windowrun with the current camera
RunRecord DescribeWindowRun();

// Makes a stored run the window's run, paused. The camera is the stored one if the run was saved from a window;
// otherwise the whole aggregate is fitted into the view.
void ShowAggregate(StoredAggregate stored);

// The file that the window has opened or saved last, for the window's title; empty if there is none
extern std::string windowfile;

// Sets the view window's title: the file's name, and "(unsaved)" if it does not have all particles.
void ShowFileInTitle();

// Asks for an aggregate file, asks about unsaved particles, and shows the file. A message box reports a fault; the
// current run stays then.
void OpenAggregate();

// Asks for a file, and before replacing an existing one, and writes the run to it; a name that does not end in .h5
// gets the extension of aggregate files. A message box reports a fault. Returns whether the run is saved.
bool SaveAggregate();

// If the view window has unsaved particles, asks whether to save them, to discard them, or to cancel. Returns whether
// to go on: the particles are saved or discarded, or there are none.
bool ConfirmDiscardingParticles();

// Asks whether to save or to discard unsaved particles when the user closes the view window, which cannot be
// cancelled. Asks nothing if the window closes because the program ends.
void AskBeforeClosing();

// If there are rescue files in the current directory, asks whether to open the newest one.
void OfferRescue();
