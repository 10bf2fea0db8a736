#include "growth/root_distributions.h"

#include "growth/generators.h"
#include "growth/state.h"

namespace
{
// How one coordinate of a root is computed; R is rootrange, theta the root's angle on the full circle.
enum Coordinate {
    kZero,
    kRandom, // (u - 0.5) R
    kCosine, // R cos(theta)
    kSine    // R sin(theta)
};

struct Distribution {
    const char *name;
    Coordinate x, y, z;
};
} // namespace

// Indexed by RootType; element 0 is used for all other values.
static const Distribution kDistributions[] = {
    {"Spherical", kRandom, kRandom, kRandom},          {"Origin", kZero, kZero, kZero},
    {"Spherical", kRandom, kRandom, kRandom},          {"Random: x axis plane", kZero, kRandom, kRandom},
    {"Random: y axis plane", kRandom, kZero, kRandom}, {"Random: z axis plane", kRandom, kRandom, kZero},
    {"Ring: x axis plane", kZero, kCosine, kSine},     {"Ring: y axis plane", kCosine, kZero, kSine},
    {"Ring: z axis plane", kCosine, kSine, kZero},
};

static const Distribution &FindDistribution(int roottype);
static double PlaceCoordinate(Coordinate coordinate, double theta);

const char *RootTypeName(int roottype)
{
    return FindDistribution(roottype).name;
}

Vector PlaceRoot(int index)
{
    const Distribution &distribution = FindDistribution(growthstate.roottype);
    const double theta = index * kTwoPi / growthstate.nroots;
    Vector p;
    p.x = PlaceCoordinate(distribution.x, theta);
    p.y = PlaceCoordinate(distribution.y, theta);
    p.z = PlaceCoordinate(distribution.z, theta);
    return p;
}

static const Distribution &FindDistribution(int roottype)
{
    return kDistributions[roottype >= kRootOrigin && roottype <= kRootRingZ ? roottype : 0];
}

static double PlaceCoordinate(Coordinate coordinate, double theta)
{
    switch (coordinate) {
    case kZero:
        return 0;
    case kRandom:
        return (DrawUniform() - 0.5) * growthstate.rootrange;
    case kCosine:
        return growthstate.rootrange * FindSineCosine(theta).cosine;
    case kSine:
        return growthstate.rootrange * FindSineCosine(theta).sine;
    }
    return 0;
}
