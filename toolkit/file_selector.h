// A dialog that asks for a file

#pragma once

#include <string>

// Shows the toolkit's file selector with a title; it lists the files that match `pattern`. Returns the chosen path;
// empty if the user cancels or chooses nothing.
std::string AskForFile(const char *title, const char *pattern = "");
