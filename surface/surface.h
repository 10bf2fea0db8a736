// The constraint surface: the triangles that walkers may not cross.
//
// After filling stltri with the corners p, call UpdateSTL, which computes everything else.

#pragma once

#include "geom/vector.h"

struct Triangle {
    Vector p[3];       // corners, in file order
    Vector n;          // unit normal (p[1] - p[0]) x (p[2] - p[0]); zero for collinear corners
    Vector midpoint;   // mean of the corners
    double A, B, C, D; // plane A x + B y + C z + D = 0, (A, B, C) = n
};

extern Triangle *stltri; // malloc'ed
extern int nstltri;      // 0: no surface

// Bounding box of all corners and its centre; 1e32, -1e32 and 0 in each component without a surface.
extern Vector stlmin;
extern Vector stlmax;
extern Vector stlmid;

// Sets the surface aside while a new one is built, starting without faces. The destructor restores the old surface
// unless Commit was called. The caller has to call UpdateSTL for the new surface.
class SurfaceTransaction
{
public:
    SurfaceTransaction();
    ~SurfaceTransaction();
    SurfaceTransaction(const SurfaceTransaction &) = delete;
    SurfaceTransaction &operator=(const SurfaceTransaction &) = delete;
    void Commit() { committed = true; }

private:
    Triangle *faces;
    int count;
    bool committed = false;
};

// Removes the faces with two coinciding corners (the last face takes the place of a removed one) and
// computes normals, planes, centres and bounds. In verbose mode reports them to standard error.
void UpdateSTL();

// Number of calls of UpdateSTL, which identifies the present surface.
unsigned SurfaceNumber();

// Rotates every corner about the x, then the y, then the z axis by the angles `rotate` in degrees, scales it
// about the origin and shifts it, then calls UpdateSTL: a scale of 0 flattens the surface, and faces that
// collapse are removed. In verbose mode reports scale, shift and angles to standard error.
void TransformSTL(Vector scale, Vector shift, Vector rotate);

// 1 when the segment p1-p2 crosses triangle `index` of stltri, else 0. *hit is where its line meets the
// triangle's plane, unchanged where they are parallel. A point is inside the triangle when the angles to its
// corners close the full circle to within 1e-5 degrees.
int LinePlaneIntersect(int index, Vector *hit, Vector p1, Vector p2);

// Signed distance of a point from the plane of triangle `index`, positive on the side of its normal.
double PointPlaneDist(int index, Vector point);
