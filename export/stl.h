// The constraint surface as ASCII STL, where it is shown; else nothing.

#pragma once

#include "export/text_writer.h"

void WriteSTLSurface(TextWriter &out);
