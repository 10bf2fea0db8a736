// What sarkelo-view is asked to do.

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/fault.h"
#include "viewer/pictures.h"

struct ViewCommand {
    std::string file;                  // an aggregate, or a recipe where it ends in ".toml"; empty: a new run
    std::vector<std::string> switches; // of the window
    std::optional<PictureRequest> picture; // in place of the window
    int mode = 0, surfacemode = 0;         // of drawing; 0: as the file says
    bool fits = false, fromhome = false;   // where the camera stands; neither: as the file says
    bool overwrites = false;
    bool whole = false; // every frame is drawn whole
};

// Reads the command line. Returns false where it has printed what it was asked for, or found a fault.
bool ReadViewCommand(int argc, char **argv, ViewCommand *command, Fault *fault);
