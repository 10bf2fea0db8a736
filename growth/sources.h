// Sources: where new walkers start.

#pragma once

#include "geom/vector.h"

// Writes a launch position to *p and returns p. Every source launches on the sphere of radius launchradius
// about the origin; they differ in the directions that they draw, and none draws them uniformly over the
// sphere (kept: each projects a box, a face of a box or a triangle's centre onto it). Draws from drand48 in
// the order x, y, z, or once from rand for kSourceSurface. An unknown source, and kSourceSurface without a
// surface, launch like kSourceSphere. A direction of length zero launches at the origin.
Vector *GetNewParticle(Vector *p, int sourcetype, double launchradius);

// Name of a source in menus and reports; "Unknown" for anything that is not a SourceType.
const char *SourceName(int sourcetype);

// Menu callback: walkers launched from now on come from source id.
void HandleSourceMenu(int id);
