// Recipes: what a run is to be, as text (TOML). docs/recipes.md lists every key.
//
// A recipe grows what a freshly started window grows in which everything else is set first and the number of
// roots is entered last, or the seed file read last, bit for bit.

#pragma once

#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "geom/vector.h"
#include "recipe/fault.h"

struct Recipe {
    std::vector<double> values; // of Parameters(), row by row
    std::string seedfile;       // where the roots come from; empty: they are placed
    std::string sample = "None";
    std::string surfacefile; // STL; empty: the sample
    Vector scale = {1, 1, 1};
    Vector rotate = {0, 0, 0}; // degrees
    Vector shift = {0, 0, 0};
    std::int64_t particles = 0; // where growth stops; 0: not there
    std::int64_t steps = 0;
    double minutes = 0;
    std::map<std::string, std::string> places; // of the keys that are set, "table.key": "FILE:LINE"

    // The defaults.
    Recipe();

    // Where a key was set; "recipe" where it was not.
    [[nodiscard]] std::string PlaceOf(const std::string &key) const;
};

// Adds what a file says to a recipe. Relative paths count from the file's folder. The fault of a file that
// cannot be read is a kFileFault, that of one that says what is not allowed a kRequestFault.
Fault ReadRecipe(const std::string &path, Recipe *recipe);

// Adds what an assignment "table.key=value" says: a value as in a recipe, or a bare word for text. Messages
// name the place that is given.
Fault SetInRecipe(const std::string &assignment, const std::string &place, Recipe *recipe);

// The fault of a recipe that says something twice in different ways.
Fault CheckRecipe(const Recipe &recipe);

// Writes a recipe with every key, its default, unit and range, as ReadRecipe reads it.
void PrintRecipe(FILE *file, const Recipe &recipe);

// Starts the run of a recipe in the global records. The fault of a recipe that can never grow is a
// kRequestFault with the reason.
Fault StartRun(const Recipe &recipe);

// Gives the parameters of a group the recipe's values, where it sets them.
void ApplyGroup(const Recipe &recipe, const char *group);
