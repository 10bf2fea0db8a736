// Slices: the aggregate cut into parallel slabs, each written as a file of the pieces of branches inside it.

#pragma once

#include <cstdio>
#include <string>

#include "geom/vector.h"

// The space between two parallel planes n.x = bottom and n.x = top, n of unit length; both belong to it.
struct Slab {
    Vector n;
    double top, bottom;
};

// How slicing ended: having tried every slice, or early, after a message on standard error.
enum SliceResult {
    kSlicesDone,
    kSliceUnwritten,   // the same, and a file could not be written whole
    kSliceUnopened,    // a file could not be opened
    kSlicesOutOfMemory // memory does not suffice
};

// Cuts the aggregate along a unit direction into `count` slabs of equal thickness, from the aggregate's
// radius down to its negative, and writes slab k to "slice_%03d.txt" in a folder: the pieces'
// two ends, x y z x y z, one piece a line, in the order of the branches described at ListBranches. Tells its
// progress to a stream, where there is one, and on standard error each file that cannot be written whole; the
// next slices are tried all the same.
SliceResult DoSlice(const std::string &folder, int count, Vector direction, FILE *progress);

// The piece of the branch from p to q inside a slab: its ends in *start and *end, and 1, or 0 when the branch
// lies outside. Which end is the start depends on the plane that cuts it (kept).
int ClipBranch(Vector p, Vector q, const Slab &slab, Vector *start, Vector *end);

// Stores in *branch the lowest index of a particle with `visited` 0 whose parent is particle `index`, and
// returns 1, or returns 0 where there is none.
int FindBranch(int index, int *branch);

// 1 when some particle has particle `index` as its parent, else 0 (the name is kept).
int TerminalCell(int index);

// Writes two points as one line.
void WriteVector(FILE *file, Vector a, Vector b);
