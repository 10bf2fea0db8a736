// VRML 2.0 worlds, and the nodes that they are made of.

#pragma once

#include <span>

#include "export/text_writer.h"

// The aggregate as a truncated cone with its ends and a sphere for each branch, and the faces of the
// constraint surface. The spheres are spheres as such, or meshes like the cones: of 16 points a ring with 16
// facets, of 24 with 24, and again of 24 with 32 (kept).
void WriteVRML(TextWriter &out);
void WriteCoarseVRML(TextWriter &out);
void WriteMediumVRML(TextWriter &out);
void WriteFineVRML(TextWriter &out);

// Each of the following appends one node, or the head of a file.

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
