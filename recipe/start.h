// Starts the run of a recipe.

#pragma once

#include "base/fault.h"
#include "recipe/recipe.h"

// Sets up the run of a recipe in the global records, ready to grow. A recipe whose aggregate can never grow is a
// kRequestFault with the reason.
Fault StartRun(const Recipe &recipe);

// Sets those parameters of a group that the recipe sets; the others stay.
void ApplyGroup(const Recipe &recipe, const char *group);
