// Bodies drawn in immediate mode. They change no GL state except the current normal and texture coordinates, and the
// current colour if cones have colours.

#pragma once

#include <GL/gl.h>

#include "geom/colour.h"
#include "geom/vector.h"

// The axis-aligned box between two opposite corners. Mode 0: its twelve edges; mode 1: its six faces; mode 2:
// the edges of the box enlarged on every side by 1/20 of its extent; any other mode: nothing.
void CreateBox(Vector lower, Vector upper, int mode);

// A sphere of n divisions (made even) about its axis parallel to y, with normals and texture coordinates.
// Method 0: n/2 bands of latitude as quad strips; 1: the same as triangle strips; 2: n bands as quad strips;
// any other method: nothing. A point where the radius is 0 or |n| is below 4.
void CreateSimpleSphere(Vector centre, double radius, int n, int method);

constexpr int kMostFacets = 11;

// The side of a truncated cone from p1 (radius r1) to p2 (radius r2), swept from theta1 to theta2 radians
// about its axis in m facets (at most kMostFacets), with purely radial normals and texture coordinates. The ends are
// open.
void CreateCone(Vector p1, Vector p2, double r1, double r2, double theta1, double theta2, int m);

struct Cone {
    Vector p1, p2;
    double r1, r2;
};
constexpr int kConesAtOnce = 64;

// Draws up to kConesAtOnce cones, faster than CreateCone one by one. Each cone has its own colour; if `colours` is
// nullptr, all have the current colour.
void CreateCones(const Cone *cones, const Colour *colours, int count, double theta1, double theta2, int m);

// A colour, a vertex and a normal, passed to GL in single precision.
inline void SetColour(Colour colour)
{
    glColor3f(static_cast<float>(colour.r), static_cast<float>(colour.g), static_cast<float>(colour.b));
}

inline void SetVertex(Vector p)
{
    glVertex3f(static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z));
}

inline void SetNormal(Vector n)
{
    glNormal3f(static_cast<float>(n.x), static_cast<float>(n.y), static_cast<float>(n.z));
}
