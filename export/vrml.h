// VRML 2.0 files, and the nodes in them

#pragma once

#include <span>

#include "export/text_writer.h"

// The aggregate, with a truncated cone with end caps and a sphere for each branch, and the faces of the constraint
// surface. Cones have 16 facets (WriteVRML and coarse), 24 (medium) or 32 (fine). Spheres are Sphere nodes in
// WriteVRML, otherwise meshes with rings of 16 points (coarse) or 24 (medium and, kept, fine).
void WriteVRML(TextWriter &out);
void WriteCoarseVRML(TextWriter &out);
void WriteMediumVRML(TextWriter &out);
void WriteFineVRML(TextWriter &out);

// Each of the following functions appends one node, or the head of a file.

// Head of a file: its title, navigation, and a viewpoint on the z axis at `distance` from the origin.
void WRLHeader(TextWriter &out, const char *title, double distance);

// A Sphere node
void WRLSphere(TextWriter &out, Vector centre, Colour colour, double radius);

// A sphere as a mesh with |resolution| points, at least 4 and rounded down to an even number, to a ring about the
// axis parallel to y. The last point of a ring is equal to its first (kept).
void WRLSphere3(TextWriter &out, int resolution, Vector centre, Colour colour, double radius);

// A polygon
void WRLFace(TextWriter &out, std::span<const Vector> vertices, Colour colour);

// A truncated cone from p1 to p2 as a mesh of `resolution` facets, open or with end caps. The cap of an end
// is written where the radius at the other end is above 0 (kept).
void WRLCone2(TextWriter &out, int resolution, bool caps, Vector p1, Vector p2, Colour colour, double r1,
              double r2);
