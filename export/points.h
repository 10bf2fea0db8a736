// Point clouds: ten points along each branch, from the parent on, the particle itself left out.

#pragma once

#include "export/text_writer.h"

void WritePointDXF(TextWriter &out);
void WritePointGEOM(TextWriter &out);
