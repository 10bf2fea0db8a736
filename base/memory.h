#pragma once

#include <cstddef>

// Bytes of memory that the program can still use: the machine's available memory, or what its control group's limit
// leaves, if that is less; SIZE_MAX where neither is known.
std::size_t AvailableMemory();
