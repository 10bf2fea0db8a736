// VTK PolyData in XML with raw appended data: a line for each branch, and a point for each particle with its flow,
// its parent, its number of branches from the root, and its place in the order of arrival.

#pragma once

#include "export/text_writer.h"

// Throws std::bad_alloc if memory does not suffice.
void WriteVTP(TextWriter &out);
