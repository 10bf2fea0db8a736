// Commands that ask for a file and save to it

#pragma once

// Asks for a file and writes the model in a ModelFormat and ModelMode to it. Does nothing for an unknown format, if
// the user cancels, or if the name has 256 characters or more. Reports a file that cannot be opened or written on
// standard error, in the view window in a message box; reports lack of memory always in a message box.
void SaveModel(int format, int mode);

// Menu callback: saves the kind whose menu entry has this id.
void HandleSaveMenu(int id);

// Asks for a file and writes the report of the run to it. Returns 1, or 0 if nothing was written. A message box
// reports a file that could not be written completely; in the view window also one that could not be opened.
int SaveInformation();
