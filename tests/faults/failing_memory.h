// Allocations that fail when a test wants them to: new, malloc, calloc, realloc, fopen and fdopen as the
// program calls them. Those inside the C library and the stand-ins are left alone.

#pragma once

// From now on, calls are counted. Call number `first` fails (from 1 on; 0: none), and with `on` all after it.
void FailAllocations(long first, bool on);

// Ends that; returns the number of calls since.
long EndOfFailures();
