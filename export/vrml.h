// VRML 2.0 nodes. Each writer appends one node, or the head of a file, to a text file.

#pragma once

#include <span>

#include "export/text_writer.h"

// Head of a file: its title, navigation, and a viewpoint on the z axis at that distance from the origin.
void WRLHeader(TextWriter &out, const char *title, double distance);

// A sphere as such.
void WRLSphere(TextWriter &out, Vector centre, Colour colour, double radius);

// A sphere as a mesh of |resolution| points, at least 4 and made even, to a ring about the axis parallel to
// y. The last point of a ring stands on its first (kept).
void WRLSphere3(TextWriter &out, int resolution, Vector centre, Colour colour, double radius);

// A polygon.
void WRLFace(TextWriter &out, std::span<const Vector> vertices, Colour colour);

// A truncated cone from p1 to p2 as a mesh of `resolution` facets, open or with end caps. The cap of an end
// is written where the radius at the other end is above 0 (kept).
void WRLCone2(TextWriter &out, int resolution, bool caps, Vector p1, Vector p2, Colour colour, double r1,
              double r2);
