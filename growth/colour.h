// Colours of particles, shared by the view and the exports.

#pragma once

struct Colour {
    double r, g, b; // 0..1
};

// Colour of particle `index` of cells in drawing mode `mode` (options.dlamode): with association on and two
// or more roots, modes up to kAggregateLines show the particle's class (index mod nroots, whatever root it
// descends from); everything else shows its flow on a logarithmic scale that ends, on purpose, at a third of
// the largest flow.
Colour ChooseColour(int index, int mode);

// Colour of v in the colour map `type` over the range from vmin to vmax (in either order; one shorter than
// 1e-6 is widened by 1 on both sides). v is clamped to the range. Type 1 runs from blue through cyan, green
// and yellow to red; any other type is white.
Colour GetColour(double v, double vmin, double vmax, int type);
