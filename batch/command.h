// The command line of sarkelo-grow

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/fault.h"
#include "export/model.h"
#include "geom/vector.h"
#include "recipe/recipe.h"

struct SaveRequest {
    const ModelKind *kind;
    std::string path;
};

struct SliceRequest {
    int count;
    Vector normal; // unit length
    std::string folder;
};

struct Command {
    Recipe recipe;                   // the recipe file's, overridden by the command line
    std::vector<std::string> inputs; // files that the run reads
    std::string resume;
    std::string output; // never empty
    std::string checkpoint;
    double checkpointminutes; // between checkpoints; 0: no checkpoints
    int threads;
    std::vector<SaveRequest> saves;
    std::optional<SliceRequest> slices;
    std::string statistics;
    bool continues, overwrites, quiet;
    bool printsrecipe; // only print the recipe
};

// Reads the command line. Returns false with a fault in *fault, or, without one, after printing the help or the
// version.
bool ReadCommand(int argc, char **argv, Command *command, Fault *fault);
