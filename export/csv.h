// The particles as a table: "id,parent,x,y,z,flow", numbers with 17 digits.

#pragma once

#include "export/text_writer.h"

void WriteCSV(TextWriter &out);
