// Which faces of the constraint surface are near a point, without looking at all of them.

#pragma once

#include <vector>

#include "geom/vector.h"

// The faces whose bounding box comes within `reach` of the bounding box of the segment p1-p2, along each
// axis, and perhaps others; in no order. With reach 0 these are all faces that the segment can cross; with p1
// = p2, all of which an edge can be within reach of the point. Valid until the next call; nullptr when memory
// does not suffice.
const std::vector<int> *FacesNear(Vector p1, Vector p2, double reach);

// Corners of faces have changed: the index is built anew at the next search. UpdateSTL calls this.
void DropSurfaceIndex();
