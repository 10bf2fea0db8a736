// Which faces of the constraint surface are near a point, without looking at all of them.

#pragma once

#include <vector>

#include "geom/vector.h"

// The faces, in ascending order, whose bounding box meets the cube of half edge `reach` about a point, and
// perhaps others: all that a segment of that length from the point can cross and all of which an edge can be
// that near. Valid until the next call; nullptr when memory does not suffice.
const std::vector<int> *FacesNear(Vector point, double reach);

// Corners of faces have changed: the index is built anew at the next search. UpdateSTL calls this.
void DropSurfaceIndex();
