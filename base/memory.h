#pragma once

#include <cstddef>

// Bytes of memory that the program can still use: what the machine has free, or the limit that it runs under
// leaves; the largest number where neither is known.
std::size_t AvailableMemory();
