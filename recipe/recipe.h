// Recipes: what a run is to be, as text (TOML). docs/recipes.md lists every key.
//
// A recipe grows what a freshly started window grows in which everything else is set first and the number of
// roots is entered last, or the seed file read last, bit for bit.

#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "geom/vector.h"

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
