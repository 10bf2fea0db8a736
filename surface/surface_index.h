// Finds faces of the constraint surface near a segment without testing all faces.

#pragma once

#include "geom/vector.h"

// A test of a face with the segment p1-p2.
using FaceTest = bool (*)(int face, Vector p1, Vector p2);
enum class FaceSearch { kNone, kFound, kOutOfMemory };

// Whether the test holds for a face whose bounding box comes within `reach` of the bounding box of the segment p1-p2
// along each axis; other faces may be tested, too. With reach 0 these include all faces that the segment can cross;
// with p1 = p2, all faces with an edge within reach of the point. Call UpdateSTL after changing faces.
FaceSearch FindFaceNear(Vector p1, Vector p2, double reach, FaceTest test);

// Makes FindFaceNear ready to be called by several threads, until a face changes. Returns false if memory does not
// suffice.
bool PrepareFaceSearch();
