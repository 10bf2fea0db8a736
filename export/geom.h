// GEOM records: a cone and a sphere for each branch, faces of the constraint surface.

#pragma once

#include "export/text_writer.h"

void WriteGEOM(TextWriter &out);
