// The constraint surface as ASCII STL; empty if the surface is not shown.

#pragma once

#include "export/text_writer.h"

void WriteSTLSurface(TextWriter &out);
