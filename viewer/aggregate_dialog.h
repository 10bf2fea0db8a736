// Opening and saving aggregate files in the window.

#pragma once

#include "archive/aggregate_file.h"

// What the window's run has besides the global records.
extern RunRecord windowrun;

// The same with the camera as it stands.
RunRecord DescribeWindowRun();

// Makes a stored run the window's: paused, and the whole of it in view unless its camera was turned in a window.
void ShowAggregate(StoredAggregate stored);

// Asks for an aggregate file and shows it. A fault is told in a message box, and the run stays as it is.
void OpenAggregate();

// Asks for a file, and before it replaces one, and writes the run to it. A fault is told in a message box.
void SaveAggregate();
