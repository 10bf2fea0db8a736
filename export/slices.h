// Slices: the aggregate cut into parallel slabs, each written as a file of the pieces of branches inside it.

#pragma once

#include <cstdio>
#include <string>

#include "base/fault.h"
#include "geom/vector.h"

// The space between two parallel planes n.x = bottom and n.x = top, including both planes; n has unit length.
struct Slab {
    Vector n;
    double top, bottom;
};

// How slicing ended
struct SliceResult {
    Fault fault;          // the first; none: every slice has been written
    std::string unopened; // the file that could not be opened, which ends slicing; empty: none
};

// Cuts the aggregate along a unit direction into `count` slabs of equal thickness, from the aggregate's
// radius down to its negative, and writes slab k to "slice_%03d.txt" in a folder: one line for each piece of a
// branch with its two ends, x y z x y z, in the order of ListBranches. Prints its progress to `progress` unless that
// is nullptr. Goes on with the next slice after a file that cannot be written completely.
SliceResult DoSlice(const std::string &folder, int count, Vector direction, FILE *progress);

// Stores the ends of the part of the branch from p to q that is inside a slab in *start and *end, and returns 1;
// returns 0 when the whole branch is outside. Which end is the start depends on the plane that cuts it (kept).
int ClipBranch(Vector p, Vector q, const Slab &slab, Vector *start, Vector *end);

// Stores in *branch the lowest index of a particle with `visited` 0 whose parent is particle `index`, and
// returns 1; returns 0 if there is none.
int FindBranch(int index, int *branch);

// Returns 1 if particle `index` has a child, so is not terminal, else 0 (the misleading name is kept).
int TerminalCell(int index);

// Writes two points as one line.
void WriteVector(FILE *file, Vector a, Vector b);
