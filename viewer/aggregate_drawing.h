// Drawing the aggregate.

#pragma once

// Sets the GL state of a drawing mode, of the aggregate or of the surface: kAggregateTubes (and the surface's
// solid mode, which shares its number) filled, smooth and lit by two lights at the markers; every other mode
// as flat, unlit lines.
void CreateEnvironment(int mode);

// Of so many particles one is drawn: 1 for the whole aggregate.
extern int drawnstride;

// How lines and points are drawn, of the aggregate and of the surface, and how much of the aggregate at once.
struct DrawingStyle {
    float linewidth = 1, pointsize = 1; // pixels
    int flushafter =
        0; // so many particles are passed to the driver at once, which keeps its memory small; 0: all
};
extern DrawingStyle drawingstyle;

// Draws every particle (by drawnstride) that has a parent, in the order of cells: kAggregatePoints, kAggregateLines (from the
// particle to its parent) or kAggregateTubes (a cone of ten facets whose radii follow the flow). Mode 4 only
// sets its environment; any other mode does nothing and leaves the GL state alone.
void DrawDLA(int mode);
