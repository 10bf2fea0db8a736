// Sources: where new walkers start.

#pragma once

#include "geom/vector.h"
#include "growth/stream.h"

// Writes a launch position to *p and returns p. Every source launches on the sphere of radius launchradius
// about the origin; they differ in the directions that they draw, and none draws them uniformly over the
// sphere (kept: each projects a box, a face of a box or a triangle's centre onto it). Draws from drand48 in
// the order x, y, z, or once from rand for kSourceSurface. An unknown source, and kSourceSurface without a
// surface, launch like kSourceSphere. A direction of length zero launches at the origin.
Vector *GetNewParticle(Vector *p, int sourcetype, double launchradius);

// The same for the walkers of flights, which draw from the stream of their particle. kSourceInfinity launches
// uniformly over the sphere.
Vector LaunchPosition(int sourcetype, double launchradius, Stream *draws);

// A uniformly random point of the unit sphere, of operations that give the same bits on every machine.
Vector DrawDirection(Stream *draws);

// Adds a launch position to seeds, and counts it in nseeds. Before the count overflows, it is reduced to one with the
// same place in the ring, and the ring full.
void RecordLaunch(Vector pos);

// Name of a source in menus and reports; "Unknown" for anything that is not a SourceType.
const char *SourceName(int sourcetype);

// Menu callback: walkers launched from now on come from source id.
void HandleSourceMenu(int id);
