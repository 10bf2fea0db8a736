// The aggregate as a body to print, in a binary STL file: a cone frustum for each branch and a sphere at each
// particle, each closed and oriented outwards; they overlap. Lengths are in millimetres: drawing.scale of them a
// unit.

#pragma once

#include "export/text_writer.h"

// Where a radius is 0, or too small for the numbers of the file to tell its points apart, a frustum ends in an apex,
// and there is no sphere. Memory may run out: std::bad_alloc.
void WriteSTLAggregate(TextWriter &out);
