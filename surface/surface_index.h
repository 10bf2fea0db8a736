// Which faces of the constraint surface are near a point, without looking at all of them.

#pragma once

#include "geom/vector.h"

// A test of a face with the segment p1-p2.
using FaceTest = bool (*)(int face, Vector p1, Vector p2);
enum class FaceSearch { kNone, kFound, kOutOfMemory };

// Whether the test holds for a face whose bounding box comes within `reach` of the bounding box of the segment p1-p2,
// along each axis; perhaps others are tested, too. Faces that have changed are noticed once
// UpdateSTL has been called. With reach 0 these are all faces that the segment can cross; with p1
// = p2, all of which an edge can be within reach of the point.
FaceSearch FindFaceNear(Vector p1, Vector p2, double reach, FaceTest test);
