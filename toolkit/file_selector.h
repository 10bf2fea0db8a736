// Asking for a file.

#pragma once

#include <string>

// Shows the toolkit's file selector with a title, and a pattern of the files that it lists. Returns the chosen path;
// empty where the user cancels or chooses nothing.
std::string AskForFile(const char *title, const char *pattern = "");
