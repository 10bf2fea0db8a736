#pragma once

#include <cstdio>

// Writes a report of the run to an open file: parameters, constraint surface, size of the aggregate, and the
// statistics where they have been taken.
void WriteInformation(FILE *file);
