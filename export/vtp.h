// VTK PolyData in XML with raw appended data: a point for each particle, with its flow, its parent, its distance
// from the root in branches and its place in the order of arrival, and a line for each branch.

#pragma once

#include "export/text_writer.h"

// Memory may run out: std::bad_alloc.
void WriteVTP(TextWriter &out);
