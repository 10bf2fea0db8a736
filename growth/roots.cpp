#include "growth/roots.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "growth/array.h"
#include "growth/growth_step.h"
#include "growth/memory.h"
#include "growth/state.h"

// Least distance from the range of several roots to the edge of the launch area.
constexpr double kRootMargin = 10;
// The largest roottype that places roots.
constexpr int kLastRootType = 9;
// Memory that a root takes, in the aggregate and in the index over it.
constexpr std::size_t kBytesPerRoot = 2 * sizeof(Particle);

// How one coordinate of a root is made; R is rootrange, theta the root's share of the full circle.
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

// Indexed by RootType; element 0 stands for every other value that places roots.
static const Distribution kDistributions[] = {
    {"Spherical", kRandom, kRandom, kRandom},          {"Origin", kZero, kZero, kZero},
    {"Spherical", kRandom, kRandom, kRandom},          {"Random: x axis plane", kZero, kRandom, kRandom},
    {"Random: y axis plane", kRandom, kZero, kRandom}, {"Random: z axis plane", kRandom, kRandom, kZero},
    {"Ring: x axis plane", kZero, kCosine, kSine},     {"Ring: y axis plane", kCosine, kZero, kSine},
    {"Ring: z axis plane", kCosine, kSine, kZero},
};

static void SetGrowthDefaults();
static void SeedGenerators();
static int CountPlacedRoots();
static const Distribution &FindDistribution(int roottype);
static double PlaceCoordinate(Coordinate coordinate, double theta);
static void SetRootName(const char *name);

void InitialiseGrowth()
{
    static bool initialised = false;
    if (!initialised) {
        SetGrowthDefaults();
        ResetSeeds();
        initialised = true;
    }

    const int placed = CountPlacedRoots();
    growthstate.running = 1;
    growthstate.radius = 10 * growthstate.branchlength;
    if (growthstate.nroots >= 2) {
        growthstate.radius = std::max(growthstate.radius, growthstate.rootrange + kRootMargin);
        for (int i = 0; i < placed; i++)
            growthstate.radius = std::max(growthstate.radius, Modulus(cells[i].p));
    }
    growthstate.stepcount = 0;
    growthstate.maxweight = 0;
    SeedGenerators();
    stats.timestep = 0;
    nseeds = 0;
    ncells = placed;
    ForgetAggregate();
}

int ResetSeeds()
{
    int count = 0;
    if (growthstate.roottype == kRootOrigin)
        count = 1;
    else if (growthstate.roottype <= kLastRootType)
        count = std::max(growthstate.nroots, 0);
    if (!ResizeArray(&cells, static_cast<std::size_t>(count)))
        return 0;

    const Distribution &distribution = FindDistribution(growthstate.roottype);
    for (int i = 0; i < count; i++) {
        const double theta = i * kTwoPi / growthstate.nroots;
        Vector p;
        p.x = PlaceCoordinate(distribution.x, theta);
        p.y = PlaceCoordinate(distribution.y, theta);
        p.z = PlaceCoordinate(distribution.z, theta);
        cells[i] = {p, 0, -1, 0};
    }
    if (count > 0)
        SetRootName(distribution.name);
    ncells = count;
    ForgetAggregate();
    SeedGenerators();
    nseeds = 0;
    return 1;
}

void RestartFromRoots()
{
    InitialiseGrowth();
    ResetSeeds();
}

bool MemoryHoldsRoots(int count)
{
    return count <= 0 || static_cast<std::size_t>(count) <= AvailableMemory() / kBytesPerRoot;
}

const char *RootTypeName(int roottype)
{
    return FindDistribution(roottype).name;
}

void HandleRootMenu(int id)
{
    growthstate.roottype = id;
    if (id >= kRootOrigin && id <= kRootRingZ)
        SetRootName(kDistributions[id].name);
}

SeedFileResult ReadSeedFile(const char *path)
{
    FILE *file = fopen(path, "r");
    if (file == nullptr)
        return kSeedFileUnopened;

    growthstate.nroots = 0;
    RestartFromRoots();
    ncells = 0;
    SetRootName(path);

    SeedFileResult result = kSeedFileRead;
    Vector p;
    while (fscanf(file, "%lf %lf %lf\n", &p.x, &p.y, &p.z) == 3) {
        if (!AppendToArray(&cells, &ncells, Particle{p, 0, -1, 0}) ||
            !AppendToArray(&roots, &growthstate.nroots, p)) {
            ncells = growthstate.nroots;
            result = kSeedFileOutOfMemory;
            break;
        }
        growthstate.radius = std::max(growthstate.radius, Modulus(p));
    }
    fclose(file);

    if (growthstate.nroots == 0) {
        growthstate.nroots = 1;
        growthstate.roottype = kRootOrigin;
        RestartFromRoots();
        return kSeedFileEmpty;
    }
    if (options.debug)
        fprintf(stderr, "Read %d root seed positions\n", growthstate.nroots);
    return result;
}

static void SetGrowthDefaults()
{
    growthstate.sourcetype = kSourceSphere;
    growthstate.bias = 0.1;
    growthstate.branchlength = 1.0;
    growthstate.stickiness = 100.0;
    growthstate.thickfrom = 0.4;
    growthstate.thickto = 0.01;
    growthstate.seed = 12345;
    growthstate.rotation = 0;
    growthstate.nroots = 1;
    growthstate.rootrange = 10.0;
    growthstate.roottype = kRootOrigin;
    growthstate.association = 0;
    growthstate.intersectrange = 0;
    snprintf(growthstate.surfacename, sizeof growthstate.surfacename, "None");
}

static void SeedGenerators()
{
    srand(static_cast<unsigned>(growthstate.seed));
    srand48(growthstate.seed);
}

// The roots at the start of cells that a restart keeps: kRootOrigin places one root whatever nroots is.
static int CountPlacedRoots()
{
    const int limit = std::min(growthstate.nroots, ncells);
    int placed = 0;
    while (placed < limit && cells[placed].parent < 0)
        placed++;
    return placed;
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
        return (drand48() - 0.5) * growthstate.rootrange;
    case kCosine:
        return growthstate.rootrange * std::cos(theta);
    case kSine:
        return growthstate.rootrange * std::sin(theta);
    }
    return 0;
}

static void SetRootName(const char *name)
{
    snprintf(growthstate.rootname, sizeof growthstate.rootname, "%s", name);
}
