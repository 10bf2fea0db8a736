#include "surface/surface.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "growth/state.h"

// Below this cosine of the angle to the normal, times the segment's length, a segment is parallel to a face.
constexpr double kParallel = 1e-5;
// Degrees by which the angles around a point inside a face may miss the full circle.
constexpr double kFullCircleTolerance = 1e-5;
// A point of a face's plane forms a triangle with each side. Where twice their signed areas are all above this share
// of the longest side's square, or one is below minus that, rounding cannot change the result: the exact angles add
// up to the full circle, or miss it by far more than the tolerance.
constexpr double kClearArea = 0.001;
// This holds for faces of which twice the area is above this share of the longest side's square,
constexpr double kClearFace = 0.01;
// and for points nearer to the origin than so many longest sides.
constexpr double kClearDistance = 1e6;
// Bound for an empty surface: larger than every coordinate of a real one.
constexpr double kUnbounded = 1e32;

Triangle *stltri = nullptr;
int nstltri = 0;
Vector stlmin = {kUnbounded, kUnbounded, kUnbounded};
Vector stlmax = {-kUnbounded, -kUnbounded, -kUnbounded};
Vector stlmid = {0, 0, 0};
static unsigned surfacenumber = 0;

namespace
{
enum class Place { kInside, kOutside, kUnclear };

// Sines and cosines of the rotations about the three axes.
struct Rotation {
    SineCosine x, y, z;
};
} // namespace

static Place PlaceInFace(const Triangle &t, Vector p, double farthest2);
static Vector TransformPoint(Vector p, Vector scale, Vector shift, const Rotation &angles);
static void RemoveBadFaces();
static bool IsBadFace(const Triangle &t);
static void DeriveFaceData(Triangle *t);
static void FindBounds();

SurfaceTransaction::SurfaceTransaction()
    : faces(std::exchange(stltri, nullptr)), count(std::exchange(nstltri, 0))
{
}

SurfaceTransaction::~SurfaceTransaction()
{
    if (!committed) {
        std::swap(faces, stltri);
        nstltri = count;
    }
    free(faces);
}

void UpdateSTL()
{
    surfacenumber++;
    RemoveBadFaces();
    for (int i = 0; i < nstltri; i++)
        DeriveFaceData(&stltri[i]);
    FindBounds();
    if (options.debug) {
        fprintf(stderr, "Bounds: %g <= x <= %g\n", stlmin.x, stlmax.x);
        fprintf(stderr, "        %g <= y <= %g\n", stlmin.y, stlmax.y);
        fprintf(stderr, "        %g <= z <= %g\n", stlmin.z, stlmax.z);
        fprintf(stderr, "Midpoint: %g %g %g\n", stlmid.x, stlmid.y, stlmid.z);
    }
}

unsigned SurfaceNumber()
{
    return surfacenumber;
}

void TransformSTL(Vector scale, Vector shift, Vector rotate)
{
    if (options.debug) {
        fprintf(stderr, "Scale  : %g,%g,%g\n", scale.x, scale.y, scale.z);
        fprintf(stderr, "Shift  : %g,%g,%g\n", shift.x, shift.y, shift.z);
        fprintf(stderr, "Rotate : %g,%g,%g\n", rotate.x, rotate.y, rotate.z);
    }
    const Rotation angles = {FindSineCosine(kDegreesToRadians * rotate.x),
                             FindSineCosine(kDegreesToRadians * rotate.y),
                             FindSineCosine(kDegreesToRadians * rotate.z)};
    for (int i = 0; i < nstltri; i++)
        for (Vector &corner : stltri[i].p)
            corner = TransformPoint(corner, scale, shift, angles);
    UpdateSTL();
}

int LinePlaneIntersect(int index, Vector *hit, Vector p1, Vector p2)
{
    const Triangle &t = stltri[index];
    const double denom = DotProduct(t.n, p2 - p1);
    if (std::fabs(denom) < kParallel)
        return 0;
    const double mu = -(t.D + DotProduct(t.n, p1)) / denom;
    *hit = p1 + mu * (p2 - p1);
    if (mu < 0 || mu > 1)
        return 0;
    const double farthest2 = std::max(DotProduct(p1, p1), DotProduct(p2, p2));
    if (const Place place = PlaceInFace(t, *hit, farthest2); place != Place::kUnclear)
        return place == Place::kInside;

    Vector u[3];
    for (int i = 0; i < 3; i++) {
        u[i] = t.p[i] - *hit;
        Normalise(&u[i]);
    }
    const double sum = ArcCosine(DotProduct(u[0], u[1])) + ArcCosine(DotProduct(u[1], u[2])) +
                       ArcCosine(DotProduct(u[0], u[2]));
    return std::fabs(sum * kRadiansToDegrees - 360) <= kFullCircleTolerance;
}

double PointPlaneDist(int index, Vector point)
{
    const Triangle &t = stltri[index];
    return t.A * point.x + t.B * point.y + t.C * point.z + t.D;
}

// Whether a point of the face's plane is inside the face, unless only the angles can decide. The point is on a
// segment whose ends are at a squared distance of at most farthest2 from the origin.
static Place PlaceInFace(const Triangle &t, Vector p, double farthest2)
{
    const Vector a = t.p[1] - t.p[0];
    const Vector b = t.p[2] - t.p[0];
    const Vector c = p - t.p[0];
    const double longest2 = std::max({DotProduct(a, a), DotProduct(b, b), DotProduct(b - a, b - a)});
    const double area = DotProduct(t.n, CrossProduct(a, b));
    if (!(area > kClearFace * longest2 && farthest2 < kClearDistance * kClearDistance * longest2))
        return Place::kUnclear;
    const double besidea = DotProduct(t.n, CrossProduct(a, c));
    const double besideb = DotProduct(t.n, CrossProduct(c, b));
    const double opposite = area - besidea - besideb;
    const double clear = kClearArea * longest2;
    if (besidea > clear && besideb > clear && opposite > clear)
        return Place::kInside;
    return besidea < -clear || besideb < -clear || opposite < -clear ? Place::kOutside : Place::kUnclear;
}

static Vector TransformPoint(Vector p, Vector scale, Vector shift, const Rotation &angles)
{
    p = RotateX(p, angles.x);
    p = RotateY(p, angles.y);
    p = RotateZ(p, angles.z);
    return {p.x * scale.x + shift.x, p.y * scale.y + shift.y, p.z * scale.z + shift.z};
}

static void RemoveBadFaces()
{
    int removed = 0;
    for (int i = 0; i < nstltri;) {
        if (IsBadFace(stltri[i])) {
            nstltri--;
            stltri[i] = stltri[nstltri];
            removed++;
        } else {
            i++;
        }
    }
    if (removed > 0 && options.debug)
        fprintf(stderr, "Removed %d bad faces\n", removed);
}

static bool IsBadFace(const Triangle &t)
{
    return VectorEqual(t.p[0], t.p[1]) || VectorEqual(t.p[1], t.p[2]) || VectorEqual(t.p[2], t.p[0]);
}

static void DeriveFaceData(Triangle *t)
{
    t->n = CalcNormal(t->p[0], t->p[1], t->p[2]);
    Normalise(&t->n);
    t->A = t->n.x;
    t->B = t->n.y;
    t->C = t->n.z;
    t->D = -(t->A * t->p[0].x + t->B * t->p[0].y + t->C * t->p[0].z);
    t->midpoint = {(t->p[0].x + t->p[1].x + t->p[2].x) / 3, (t->p[0].y + t->p[1].y + t->p[2].y) / 3,
                   (t->p[0].z + t->p[1].z + t->p[2].z) / 3};
}

static void FindBounds()
{
    stlmin = {kUnbounded, kUnbounded, kUnbounded};
    stlmax = {-kUnbounded, -kUnbounded, -kUnbounded};
    for (int i = 0; i < nstltri; i++)
        for (const Vector &corner : stltri[i].p)
            MinMaxXYZ(&stlmin, &stlmax, corner);
    stlmid = 0.5 * (stlmin + stlmax);
}
