// Drawing the constraint surface.

#pragma once

// Draws the surface in a SurfaceMode from a display list. If `rebuild` is nonzero, compiles the list and does not
// draw it; required after any change of the surface or its mode. The first call compiles the list in any case. Does
// nothing for kSurfaceOff and for values that are no mode.
void DrawSTL(int mode, int rebuild);
