// The aggregate as a mesh of tubes in a binary PLY file. A tube starts at a root or a fork and follows the branch of
// largest flow at each particle. Neighbouring facets share their vertices; these have the colours of the view.

#pragma once

#include "export/text_writer.h"

// Throws std::bad_alloc if memory does not suffice.
void WritePLY(TextWriter &out);
