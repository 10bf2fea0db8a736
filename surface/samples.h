// Built-in constraint surfaces, about as large as a young aggregate: radius 20 and height 40 about the
// origin, axis along z. The plane lies below, at z = -20.

#pragma once

#include <span>

struct Sample {
    const char *name;
    int id;
};

// Names and ids in the order of the menu. "None", id 100, is the first.
std::span<const Sample> Samples();

// Replaces the constraint surface by the sample of that id and names it in growthstate.surfacename; any id that is
// not a shape's removes the surface and names it "None". Returns 1, or 0 with the surface as it was when memory does
// not hold the new one.
int BuildSample(int id);
