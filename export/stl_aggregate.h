// The aggregate as a body for 3D printing, in a binary STL file: a cone frustum for each branch and a sphere at each
// particle. Each of these is closed and oriented outwards; they overlap. Lengths are in millimetres, drawing.scale
// millimetres for a unit of length.

#pragma once

#include "export/text_writer.h"

// Where a radius is 0, or so small that points of the ring would be equal in single precision, a frustum ends in a
// point, and there is no sphere. Throws std::bad_alloc if memory does not suffice.
void WriteSTLAggregate(TextWriter &out);
