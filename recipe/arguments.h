// Reading a command line with CLI11, the same way in every program

#pragma once

#include <string>
#include <vector>

#include "base/fault.h"

namespace CLI
{
class App;
}

// Reads the words after the program's name, with --version added to the options of `app`, which has the program's
// name. Returns false with a fault in *fault, or, without one, after printing the help or the version.
bool ReadArguments(CLI::App *app, std::vector<std::string> words, Fault *fault);
