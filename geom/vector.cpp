#include "geom/vector.h"

// Points whose coordinates all differ by at most this are the same vertex.
constexpr double kSamePoint = 1e-6;
// Below this a line has no direction, and two lines, or a line and a plane, are parallel.
constexpr double kDegenerate = 1e-5;

static bool PointInBox(Vector p, Vector min, Vector max);

int VectorEqual(Vector a, Vector b)
{
    return std::fabs(a.x - b.x) <= kSamePoint && std::fabs(a.y - b.y) <= kSamePoint &&
           std::fabs(a.z - b.z) <= kSamePoint;
}

Vector RotateX(Vector p, double theta)
{
    return RotateX(p, FindSineCosine(theta));
}

Vector RotateY(Vector p, double theta)
{
    return RotateY(p, FindSineCosine(theta));
}

Vector RotateZ(Vector p, double theta)
{
    return RotateZ(p, FindSineCosine(theta));
}

Vector RotateX(Vector p, SineCosine theta)
{
    const auto [s, c] = theta;
    return {p.x, c * p.y + s * p.z, c * p.z - s * p.y};
}

Vector RotateY(Vector p, SineCosine theta)
{
    const auto [s, c] = theta;
    return {c * p.x - s * p.z, p.y, s * p.x + c * p.z};
}

Vector RotateZ(Vector p, SineCosine theta)
{
    const auto [s, c] = theta;
    return {c * p.x + s * p.y, c * p.y - s * p.x, p.z};
}

Vector ArbitraryRotate(Vector p, double theta, Vector r)
{
    return ArbitraryRotate(p, FindSineCosine(theta), r);
}

Vector CalcNormal(Vector p1, Vector p2, Vector p3)
{
    Vector n = CrossProduct(p2 - p1, p3 - p1);
    Normalise(&n);
    return n;
}

int LineLineIntersect(Vector p1, Vector p2, Vector p3, Vector p4, Vector *pa, Vector *pb, double *mua,
                      double *mub)
{
    const auto degenerate = [](Vector d) {
        return std::fabs(d.x) < kDegenerate && std::fabs(d.y) < kDegenerate && std::fabs(d.z) < kDegenerate;
    };
    const Vector p43 = p4 - p3;
    const Vector p21 = p2 - p1;
    if (degenerate(p43) || degenerate(p21))
        return 0;

    const Vector p13 = p1 - p3;
    const double d1343 = DotProduct(p13, p43);
    const double d4321 = DotProduct(p43, p21);
    const double d1321 = DotProduct(p13, p21);
    const double d4343 = DotProduct(p43, p43);
    const double d2121 = DotProduct(p21, p21);
    const double denom = d2121 * d4343 - d4321 * d4321;
    if (std::fabs(denom) < kDegenerate)
        return 0;

    *mua = (d1343 * d4321 - d1321 * d4343) / denom;
    *mub = (d1343 + d4321 * *mua) / d4343;
    *pa = p1 + *mua * p21;
    *pb = p3 + *mub * p43;
    return 1;
}

double PointLine3D(Vector p, Vector p1, Vector p2, Vector *closest, double *mu)
{
    const Vector d = p2 - p1;
    const double length2 = DotProduct(d, d);
    if (length2 < kDegenerate) {
        *mu = 0;
        *closest = p1;
    } else {
        *mu = DotProduct(p - p1, d) / length2;
        *closest = p1 + *mu * d;
    }
    return Modulus(p - *closest);
}

int LineSegmentPlane(Vector p1, Vector p2, Vector n, double D, Vector *p)
{
    const double denom = DotProduct(n, p1 - p2);
    if (std::fabs(denom) < kDegenerate)
        return 0;
    const double mu = (DotProduct(n, p1) + D) / denom;
    if (mu < 0 || mu > 1)
        return 0;
    *p = p1 + mu * (p2 - p1);
    return 1;
}

int LineInBox(Vector corner1, Vector corner2, Vector p1, Vector p2)
{
    Vector min = corner1;
    Vector max = corner1;
    MinMaxXYZ(&min, &max, corner2);
    if ((p1.x > max.x && p2.x > max.x) || (p1.x < min.x && p2.x < min.x) || //
        (p1.y > max.y && p2.y > max.y) || (p1.y < min.y && p2.y < min.y) || //
        (p1.z > max.z && p2.z > max.z) || (p1.z < min.z && p2.z < min.z))
        return 0;

    if (PointInBox(p1, min, max) || PointInBox(p2, min, max))
        return 1;
    for (int k = 1; k <= 9; k++)
        if (PointInBox(p1 + (k / 10.0) * (p2 - p1), min, max))
            return 1;
    return 0;
}

static bool PointInBox(Vector p, Vector min, Vector max)
{
    return p.x >= min.x && p.x <= max.x && p.y >= min.y && p.y <= max.y && p.z >= min.z && p.z <= max.z;
}
