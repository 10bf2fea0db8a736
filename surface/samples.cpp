#include "surface/samples.h"

#include <cstdio>

#include "base/array.h"
#include "growth/state.h"
#include "surface/surface.h"

constexpr double kRadius = 20;
constexpr double kHalfHeight = 20;
// Distance from the axis of the box to its corners, which lie in the x and y directions; its sides are 40 long.
constexpr double kBoxCornerRadius = 28.284271247461902;
// Degrees between the corners of the cylinder, of the box, and of the sphere's grid.
constexpr int kCylinderStep = 5;
constexpr int kBoxStep = 90;
constexpr int kSphereStep = 5;
// The plane is a grid of squares: their number on either side of the centre, and their edge.
constexpr int kPlaneSquares = 10;
constexpr double kPlaneSquareSize = 20;

namespace
{
// The shapes by their menu ids.
enum SampleId {
    kCylinder = 1,
    kOpenCylinder,
    kTube,
    kBox = 11,
    kOpenBox,
    kBoxSides,
    kSphere = 21,
    kHemisphere,
    kClosedHemisphere,
    kPlane = 31,
    kNoSample = 100
};
} // namespace

static const Sample kSamples[] = {
    {"None", kNoSample},
    {"Cylinder", kCylinder},
    {"Open (single) cylinder", kOpenCylinder},
    {"Open (double) cylinder", kTube},
    {"Box", kBox},
    {"Open (single) Box", kOpenBox},
    {"Open (double) Box", kBoxSides},
    {"Sphere", kSphere},
    {"Hemisphere", kHemisphere},
    {"Closed hemisphere", kClosedHemisphere},
    {"Plane", kPlane},
};

namespace
{
// Which ends of a prism are closed, and how the upper half of a sphere is built.
enum Ends { kOpenEnds, kBottomOnly, kBothEnds };
enum UpperHalf { kRoundHalf, kFlatHalf, kNoHalf };
} // namespace

static bool BuildShape(int id);
static bool AddPrism(double radius, int step, Ends ends);
static bool AddFan(double radius, int step, double z);
static bool AddSphere(UpperHalf upper);
static bool AddPlane();
static bool AddFace(Vector a, Vector b, Vector c);
static SineCosine OfDegrees(int degrees);
static Vector OnCircle(double radius, int degrees, double z);
static Vector OnSphere(int latitude, int longitude, double height);

std::span<const Sample> Samples()
{
    return kSamples;
}

int BuildSample(int id)
{
    SurfaceTransaction old;
    if (!BuildShape(id))
        return 0;
    old.Commit();
    const char *name = "None";
    for (const Sample &sample : kSamples)
        if (sample.id == id)
            name = sample.name;
    snprintf(growthstate.surfacename, sizeof growthstate.surfacename, "%s", name);
    UpdateSTL();
    return 1;
}

static bool BuildShape(int id)
{
    switch (id) {
    case kCylinder:
        return AddPrism(kRadius, kCylinderStep, kBothEnds);
    case kOpenCylinder:
        return AddPrism(kRadius, kCylinderStep, kBottomOnly);
    case kTube:
        return AddPrism(kRadius, kCylinderStep, kOpenEnds);
    case kBox:
        return AddPrism(kBoxCornerRadius, kBoxStep, kBothEnds);
    case kOpenBox:
        return AddPrism(kBoxCornerRadius, kBoxStep, kBottomOnly);
    case kBoxSides:
        return AddPrism(kBoxCornerRadius, kBoxStep, kOpenEnds);
    case kSphere:
        return AddSphere(kRoundHalf);
    case kHemisphere:
        return AddSphere(kNoHalf);
    case kClosedHemisphere:
        return AddSphere(kFlatHalf);
    case kPlane:
        return AddPlane();
    default:
        return true;
    }
}

static bool AddPrism(double radius, int step, Ends ends)
{
    for (int a = 0; a < 360; a += step) {
        const int b = (a + step) % 360;
        const Vector upper = OnCircle(radius, a, kHalfHeight);
        const Vector lower = OnCircle(radius, b, -kHalfHeight);
        if (!AddFace(upper, OnCircle(radius, a, -kHalfHeight), lower) ||
            !AddFace(upper, lower, OnCircle(radius, b, kHalfHeight)))
            return false;
    }
    if (ends != kOpenEnds && !AddFan(radius, step, -kHalfHeight))
        return false;
    return ends != kBothEnds || AddFan(radius, step, kHalfHeight);
}

// Adds an end of a prism. Both ends have the same order of corners, so both normals point along +z (kept).
static bool AddFan(double radius, int step, double z)
{
    for (int a = 0; a < 360; a += step)
        if (!AddFace({0, 0, z}, OnCircle(radius, a, z), OnCircle(radius, (a + step) % 360, z)))
            return false;
    return true;
}

// At the poles, half of the faces have a side of length zero; UpdateSTL removes them. A flat upper half lies in the
// plane z = 0, where its faces cover the disc several times (kept).
static bool AddSphere(UpperHalf upper)
{
    for (int longitude = 0; longitude < 360; longitude += kSphereStep) {
        for (int latitude = -90; latitude < 90; latitude += kSphereStep) {
            if (latitude >= 0 && upper == kNoHalf)
                continue;
            const double height = latitude >= 0 && upper == kFlatHalf ? 0 : kRadius;
            const Vector a = OnSphere(latitude, longitude, height);
            const Vector b = OnSphere(latitude, longitude + kSphereStep, height);
            const Vector c = OnSphere(latitude + kSphereStep, longitude + kSphereStep, height);
            const Vector d = OnSphere(latitude + kSphereStep, longitude, height);
            if (!AddFace(a, b, c) || !AddFace(c, d, a))
                return false;
        }
    }
    return true;
}

static bool AddPlane()
{
    const double z = -kHalfHeight;
    for (int column = -kPlaneSquares; column < kPlaneSquares; column++) {
        const double x0 = column * kPlaneSquareSize;
        const double x1 = x0 + kPlaneSquareSize;
        for (int row = -kPlaneSquares; row < kPlaneSquares; row++) {
            const double y0 = row * kPlaneSquareSize;
            const double y1 = y0 + kPlaneSquareSize;
            if (!AddFace({x0, y0, z}, {x0, y1, z}, {x1, y1, z}) ||
                !AddFace({x1, y1, z}, {x1, y0, z}, {x0, y0, z}))
                return false;
        }
    }
    return true;
}

static bool AddFace(Vector a, Vector b, Vector c)
{
    return AppendToArray(&stltri, &nstltri, Triangle{{a, b, c}, {}, {}, 0, 0, 0, 0});
}

static SineCosine OfDegrees(int degrees)
{
    return FindSineCosine(degrees * kDegreesToRadians);
}

static Vector OnCircle(double radius, int degrees, double z)
{
    const SineCosine theta = OfDegrees(degrees);
    return {radius * theta.cosine, radius * theta.sine, z};
}

static Vector OnSphere(int latitude, int longitude, double height)
{
    const SineCosine lambda = OfDegrees(latitude);
    const SineCosine phi = OfDegrees(longitude);
    return {kRadius * lambda.cosine * phi.cosine, kRadius * lambda.cosine * phi.sine, height * lambda.sine};
}
