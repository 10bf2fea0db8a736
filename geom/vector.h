// Vector: three doubles, and the free functions that the whole system shares on them.
//
// Vectors are passed and returned by value; Normalise and MinMaxXYZ work in place. All tolerances are
// absolute, in the unit of the coordinates. Functions fail only by returning 0. Infinities and NaNs
// are not checked for: they propagate.

#pragma once

#include <algorithm>
#include <cmath>

#include "geom/elementary.h"

struct Vector {
    double x, y, z;
    bool operator==(const Vector &) const = default;
};

constexpr double kDegreesToRadians = 0.017453292519943295;
constexpr double kRadiansToDegrees = 57.29577951308232;
constexpr double kTwoPi = 6.283185307179586;

// Simple routines -----------------------------------------------------------------------------------------

inline Vector operator+(Vector a, Vector b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

inline Vector operator-(Vector a, Vector b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

inline Vector operator*(double s, Vector a)
{
    return {s * a.x, s * a.y, s * a.z};
}

inline double DotProduct(Vector a, Vector b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline Vector CrossProduct(Vector a, Vector b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

// Length of a.
inline double Modulus(Vector a)
{
    return std::sqrt(DotProduct(a, a));
}

// Distance between the points a and b.
inline double VectorLength(Vector a, Vector b)
{
    return Modulus(b - a);
}

// Scales *v to unit length by dividing each component by the length; a vector of length 0 becomes (0, 0, 0).
inline void Normalise(Vector *v)
{
    const double length = Modulus(*v);
    if (length == 0)
        *v = {0, 0, 0};
    else
        *v = {v->x / length, v->y / length, v->z / length};
}

// 1 when each component of a and b differs by at most 1e-6, else 0.
int VectorEqual(Vector a, Vector b);

// *min and *max become the componentwise minimum and maximum of themselves and p.
inline void MinMaxXYZ(Vector *min, Vector *max, Vector p)
{
    *min = {std::min(min->x, p.x), std::min(min->y, p.y), std::min(min->z, p.z)};
    *max = {std::max(max->x, p.x), std::max(max->y, p.y), std::max(max->z, p.z)};
}

// Rotations -----------------------------------------------------------------------------------------------

// Rotation about a coordinate axis by theta radians, clockwise seen from the tip of the axis: the opposite
// sense of ArbitraryRotate. Kept: surfaces are placed with these.
Vector RotateX(Vector p, double theta);
Vector RotateY(Vector p, double theta);
Vector RotateZ(Vector p, double theta);

// The same with the sine and cosine given, for many points rotated by one angle.
Vector RotateX(Vector p, SineCosine theta);
Vector RotateY(Vector p, SineCosine theta);
Vector RotateZ(Vector p, SineCosine theta);

// p rotated by theta radians about the axis through the origin in the direction r, counterclockwise seen from
// the tip of r (the matrix form of Rodrigues' formula). r need not have unit length; a zero axis leaves only
// the scaling of p by cos(theta).
Vector ArbitraryRotate(Vector p, double theta, Vector r);
inline Vector ArbitraryRotate(Vector p, SineCosine theta, Vector r)
{
    Normalise(&r);
    const auto [s, c] = theta;
    const double t = 1 - c;
    return {(c + t * r.x * r.x) * p.x + (t * r.x * r.y - s * r.z) * p.y + (t * r.x * r.z + s * r.y) * p.z,
            (t * r.x * r.y + s * r.z) * p.x + (c + t * r.y * r.y) * p.y + (t * r.y * r.z - s * r.x) * p.z,
            (t * r.x * r.z - s * r.y) * p.x + (t * r.y * r.z + s * r.x) * p.y + (c + t * r.z * r.z) * p.z};
}

// Normals, lines and planes -------------------------------------------------------------------------------

// Unit normal (p2 - p1) x (p3 - p1) of a triangle; (0, 0, 0) for collinear corners.
Vector CalcNormal(Vector p1, Vector p2, Vector p3);

// The shortest segment pa-pb between the infinite lines p1-p2 and p3-p4, with pa = p1 + mua (p2 - p1) and
// pb = p3 + mub (p4 - p3). Returns 1, or 0 with the outputs unchanged where it cannot be formed: a line of
// length near zero, or parallel lines.
int LineLineIntersect(Vector p1, Vector p2, Vector p3, Vector p4, Vector *pa, Vector *pb, double *mua,
                      double *mub);

// Distance from p to the infinite line p1-p2; *closest = p1 + *mu (p2 - p1) is the closest point, and *mu
// lies in 0..1 where that point lies on the segment. A line of length near zero counts as the point p1, with
// *mu = 0.
double PointLine3D(Vector p, Vector p1, Vector p2, Vector *closest, double *mu);

// The point where the segment p1-p2 meets the plane n.x + D = 0. Returns 1 and the point in *p, or 0 with *p
// unchanged where the segment is parallel to the plane or ends before it.
int LineSegmentPlane(Vector p1, Vector p2, Vector n, double D, Vector *p);

// 1 when the segment p1-p2 meets the axis-aligned box between two opposite corners (in any order), else 0.
// Coarse on purpose: past the exact rejections, only the two ends and nine points between them are tested,
// so a segment that cuts a corner of the box between two of those points is reported as missing it.
int LineInBox(Vector corner1, Vector corner2, Vector p1, Vector p2);
