// Recipes: the settings of a run, written as text (TOML). docs/recipes.md lists every key.
//
// A recipe grows, bit for bit, the same aggregate as a newly started window in which the number of roots is entered,
// or the seed file read, after all other settings.

#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "geom/vector.h"

struct Recipe {
    std::vector<double> values; // of Parameters(), row by row
    std::string seedfile;       // file of the roots; empty: placed by roots.distribution
    std::string sample = "None";
    std::string surfacefile; // STL file; empty: the sample
    Vector scale = {1, 1, 1};
    Vector rotate = {0, 0, 0}; // degrees
    Vector shift = {0, 0, 0};
    std::int64_t particles = 0; // particles, steps, minutes: where growth stops; 0: no such stop
    std::int64_t steps = 0;
    double minutes = 0;
    std::map<std::string, std::string> places; // where keys were set: "table.key" to "FILE:LINE"

    // A recipe with all defaults
    Recipe();

    // Where a key was set, for messages; "recipe" if it was not set
    [[nodiscard]] std::string PlaceOf(const std::string &key) const;
};
