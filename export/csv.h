// The particles as a table with the columns "id,parent,x,y,z,flow"; numbers have 17 digits.

#pragma once

#include "export/text_writer.h"

void WriteCSV(TextWriter &out);
