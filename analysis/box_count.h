// Measures of the aggregate: the branch distribution, and the box count, from which a fractal dimension can
// be read as the slope of log N against log(1/size).
//
// A box count runs in steps of one box, so that the display stays live. Boxes of level 0 have an edge of half the
// aggregate's radius R; each level's edge is that of the level before divided by 1.5. A level's boxes form a grid
// from one box below -R to the last box whose lower corner does not exceed R, and are counted z fastest. The count
// ends below an edge of two branch lengths, or after nine levels. See docs/box-count.md.

#pragma once

#include "analysis/dimension.h"
#include "geom/vector.h"

struct Box {
    Vector lower, upper;
};

// The occupied boxes of the current level.
extern Box *boxes; // malloc'ed
extern int nboxes;

// Adds the particles with 0 to 8 children, and with 9 or more, to stats.branchcount, which nothing ever
// clears (kept). Returns 1, or 0 with nothing added when memory does not suffice.
int CountBranches();

// The line of log N against log(1/size) over the levels from `first` on that were counted: its slope is a
// box-counting dimension.
LineFit FitBoxCount(int first);

// Starts a box count: sets the request and stats.timestep, clears the levels of stats, hides the surface and
// shows the aggregate as lines. A count under way is restarted. Returns 1, or 0 with
// no count under way when memory does not suffice.
int StartBoxCount();

// Tests one box: adds it to stats.boxcount and to boxes if a branch passes through it, as LineInBox says. Returns 1
// when that was the last box of all: the request is cleared and the drawing modes are restored. When memory does not
// suffice, the count ends the same way, and std::bad_alloc is thrown. Does nothing without a request.
int CountNextBox();
