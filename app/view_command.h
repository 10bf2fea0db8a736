// The command line of sarkelo-view

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/fault.h"
#include "viewer/pictures.h"

struct ViewCommand {
    std::string file;                  // an aggregate, or a recipe if it ends in ".toml"; empty: a new run
    std::vector<std::string> switches; // switches of the window, for ReadSwitches
    std::optional<PictureRequest> picture; // pictures to make; without them, a window opens
    int mode = 0, surfacemode = 0;         // AggregateMode and SurfaceMode; 0: those of the file
    bool fits = false, fromhome = false;   // --fit, --camera home; neither: the camera of the file
    bool overwrites = false;
    bool whole = false; // every frame is drawn completely
};

// Reads the command line. Returns false with a fault in *fault, or, without one, after printing the help or the
// version.
bool ReadViewCommand(int argc, char **argv, ViewCommand *command, Fault *fault);
