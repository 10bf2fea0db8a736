// Starting the run of a recipe.

#pragma once

#include "base/fault.h"
#include "recipe/recipe.h"

// Starts the run of a recipe in the global records. The fault of a recipe that can never grow is a
// kRequestFault with the reason.
Fault StartRun(const Recipe &recipe);

// Gives the parameters of a group the recipe's values, where it sets them.
void ApplyGroup(const Recipe &recipe, const char *group);
