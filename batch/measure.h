// The statistics of sarkelo-grow

#pragma once

#include "archive/aggregate_file.h"

// Takes the statistics of the aggregate, as the window does, and writes them as JSON. docs/file-formats.md lists
// the members; a value that cannot be determined is null.
Fault WriteStatistics(const std::string &path, const RunRecord &run);
