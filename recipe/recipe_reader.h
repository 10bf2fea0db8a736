// Reads and writes recipes as text (TOML).

#pragma once

#include <cstdio>
#include <string>

#include "base/fault.h"
#include "recipe/recipe.h"

// Sets the keys of a file in a recipe. Relative paths count from the file's folder. A file that cannot be read is a
// kFileFault; a key or a value that is not allowed is a kRequestFault.
Fault ReadRecipe(const std::string &path, Recipe *recipe);

// Sets one key in a recipe by an assignment "table.key=value". The value is TOML; a text may be without quotes.
// Messages begin with `place`.
Fault SetInRecipe(const std::string &assignment, const std::string &place, Recipe *recipe);

// Returns a fault if two keys of a recipe contradict each other, such as a surface file and a sample.
Fault CheckRecipe(const Recipe &recipe);

// Writes a recipe with every key, its default, unit and range, as ReadRecipe reads it.
void PrintRecipe(FILE *file, const Recipe &recipe);
