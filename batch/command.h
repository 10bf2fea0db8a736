// What sarkelo-grow is asked to do.

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
    Recipe recipe;                   // of the file, overridden by the command line
    std::vector<std::string> inputs; // files that it is read from
    std::string resume;
    std::string output; // never empty
    std::string checkpoint;
    double checkpointminutes; // 0: none
    std::vector<SaveRequest> saves;
    std::optional<SliceRequest> slices;
    std::string statistics;
    bool continues, overwrites, quiet;
    bool printsrecipe; // and nothing else
};

// Reads the command line. Where it asks for help or the version, prints it and returns true with no command; so it
// does with a fault.
bool ReadCommand(int argc, char **argv, Command *command, Fault *fault);
