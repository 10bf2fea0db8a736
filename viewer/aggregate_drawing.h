// Drawing the aggregate.

#pragma once

#include <climits>

// Sets the GL state of a drawing mode, of the aggregate or of the surface: kAggregateTubes (and the surface's
// solid mode, which shares its number) filled, smooth and lit by two lights at the markers; every other mode
// as flat, unlit lines.
void CreateEnvironment(int mode);

// How much of the aggregate DrawDLA draws: all of it at first.
struct DrawingPart {
    int most = INT_MAX;        // of more branches only the heaviest are drawn, so many
    bool aslines = false;      // tubes are drawn as lines
    bool (*stops)() = nullptr; // asked now and then; where it says yes, DrawDLA returns at once
    int drawn = 0;             // branches that DrawDLA drew last
    bool stopped = false;      // it has stopped, since this was last cleared
};
extern DrawingPart drawingpart;

// How lines and points are drawn, of the aggregate and of the surface, and how much of the aggregate at once.
struct DrawingStyle {
    float linewidth = 1, pointsize = 1; // pixels
    int flushafter =
        0; // so many particles are passed to the driver at once, which keeps its memory small; 0: all
};
extern DrawingStyle drawingstyle;

// Draws every particle that has a parent (less what drawingpart leaves out), in the order of cells: kAggregatePoints,
// kAggregateLines (from the particle to its parent) or kAggregateTubes (a cone of ten facets whose radii follow the
// flow). Mode 4 only sets its environment; any other mode does nothing and leaves the GL state alone.
void DrawDLA(int mode);
