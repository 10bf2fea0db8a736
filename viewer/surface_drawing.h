// Drawing the constraint surface.

#pragma once

// Draws the surface in a SurfaceMode from a display list. The list is compiled, and not drawn, where
// `rebuild` is nonzero, which a caller asks for after any change of the surface or its mode; the first call
// compiles it in any case. kSurfaceOff, and any other value that is no mode, does nothing.
void DrawSTL(int mode, int rebuild);
