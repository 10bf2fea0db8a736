// How several roots are placed.

#pragma once

#include "geom/vector.h"

// Name of the distribution `roottype`, a RootType.
const char *RootTypeName(int roottype);

// The position of root `index` of growthstate.nroots in the distribution growthstate.roottype; random ones are drawn
// in the order x, y, z.
Vector PlaceRoot(int index);
