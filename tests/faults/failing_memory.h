// Allocations that fail when a test wants them to: new, malloc, calloc, realloc, fopen and fdopen as the
// program calls them. Those inside the C library and the stand-ins are left alone.

#pragma once

struct FailingMemory {
    bool armed = false; // calls are counted
    long first = 0;     // the call that fails, counted from 1; 0: none
    bool andallthatfollow = false;
    long calls = 0;
};
extern FailingMemory failingmemory;
