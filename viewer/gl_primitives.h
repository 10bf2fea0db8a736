// Bodies drawn in immediate mode. They change no GL state except the current normal and texture coordinates, and the
// current colour if cones have colours.

#pragma once

#include <GL/gl.h>

#include "geom/colour.h"
#include "geom/vector.h"

// The twelve edges of the axis-aligned box between two opposite corners
void CreateBox(Vector lower, Vector upper);

// A sphere of n divisions (made even) about its axis parallel to y, with normals and texture coordinates: n/2 bands of
// latitude. A point where the radius is 0 or |n| is below 4.
void CreateSimpleSphere(Vector centre, double radius, int n);

// The side of a truncated cone from p1 (radius r1) to p2 (radius r2), swept from theta1 to theta2 radians
// about its axis in m facets, with purely radial normals and texture coordinates. The ends are open.
void CreateCone(Vector p1, Vector p2, double r1, double r2, double theta1, double theta2, int m);

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
