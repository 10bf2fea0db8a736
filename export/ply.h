// The aggregate as a mesh of tubes in a binary PLY file. A tube follows the branches of largest flow from each root
// and each fork on; neighbouring facets share their vertices, which have the colours of the view.

#pragma once

#include "export/text_writer.h"

// Memory may run out: std::bad_alloc.
void WritePLY(TextWriter &out);
