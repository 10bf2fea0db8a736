// Saving: asks for a file and writes it.

#pragma once

// Asks for a file and writes the model in a ModelFormat and ModelMode to it. Nothing happens where the format
// is none, or the user cancels, or the name has 256 characters or more. That a file cannot be opened or written is said on
// standard error, in the view window in a message box; that memory does not suffice, always in a message box.
void SaveModel(int format, int mode);

// Menu callback: saves in the format of entry id.
void HandleSaveMenu(int id);

// Asks for a file and writes the report of the run to it. Returns 1, or 0 where nothing was
// written: after a message where the disk would not hold it, in the view window after every fault.
int SaveInformation();
