// Drawing the aggregate.

#pragma once

#include <climits>

// Sets the GL state for a drawing mode of the aggregate or of the surface: for kAggregateTubes, and the surface's
// solid mode, which has the same number, filled, smooth and lit by two lights at the positions in options.marker1 and
// options.marker2; for every other mode flat, unlit lines.
void CreateEnvironment(int mode);

// How much of the aggregate DrawDLA draws: all of it at first.
struct DrawingPart {
    int mostbranches = INT_MAX;     // only so many branches are drawn, those of the largest flow
    bool aslines = false;           // tubes are drawn as lines
    bool (*shouldstop)() = nullptr; // called now and then; DrawDLA returns at once when it returns true
    int drawn = 0;                  // number of branches that the last DrawDLA has drawn
    bool stopped = false;           // DrawDLA has returned early; cleared before a frame
};
extern DrawingPart drawingpart;

// Sizes of the lines and points of the aggregate and the surface, and how often drawing is flushed
struct DrawingStyle {
    float linewidth = 1, pointsize = 1; // pixels
    // Particles between two calls of glFlush, which keep the driver's memory small; 0: no such calls
    int flushafter = 0;
};
extern DrawingStyle drawingstyle;

// Draws every particle that has a parent (less what drawingpart leaves out), in the order of cells: kAggregatePoints,
// kAggregateLines (from the particle to its parent) or kAggregateTubes (a cone of ten facets whose radii follow the
// flow). Mode 4 only calls CreateEnvironment; any other mode does nothing and leaves the GL state alone.
void DrawDLA(int mode);
