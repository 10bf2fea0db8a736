// Recipes as text (TOML).

#pragma once

#include <cstdio>
#include <string>

#include "base/fault.h"
#include "recipe/recipe.h"

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
