// Point clouds: ten points along each branch, from the parent, which is included, to the particle, which is not.

#pragma once

#include "export/text_writer.h"

void WritePointDXF(TextWriter &out);
void WritePointGEOM(TextWriter &out);
