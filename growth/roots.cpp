#include "growth/roots.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "base/array.h"
#include "base/memory.h"
#include "growth/aggregate.h"
#include "growth/generators.h"
#include "growth/parameters.h"
#include "growth/root_distributions.h"
#include "growth/state.h"

// Least distance from the range of several roots to the edge of the launch area.
constexpr double kRootMargin = 10;
// The largest roottype that places roots.
constexpr int kLastRootType = 9;
// Memory that a root takes in the aggregate and in the neighbour search's index.
constexpr std::size_t kBytesPerRoot = 2 * sizeof(Particle);

static int CountPlacedRoots();
static int CountWantedRoots();
static void PlaceRoots(Particle *placed);
static void ReplaceCells(Particle *particles, int count);
static bool ReadPositions(FILE *file, Vector **positions, int *count);
static SeedFileResult StartFromPositions(const char *path, Vector *positions, int count);
static SeedFileResult StartFromOrigin();
static void SetRootName(const char *name);

void InitialiseGrowth()
{
    static bool initialised = false;
    if (!initialised) {
        for (const ParameterGroup &group : ParameterGroups())
            if (group.isinrecipes)
                SetDefaults(group.name);
        snprintf(growthstate.surfacename, sizeof growthstate.surfacename, "None");
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
    SeedGenerators(growthstate.seed);
    stats.timestep = 0;
    nseeds = 0;
    growthstate.steptotal = 0;
    ncells = placed;
    ForgetAggregate();
}

int ResetSeeds()
{
    Particle *placed = nullptr;
    if (!ResizeArray(&placed, static_cast<std::size_t>(CountWantedRoots())))
        return 0;
    PlaceRoots(placed);
    return 1;
}

int RestartFromRoots()
{
    Particle *placed = nullptr;
    if (!ResizeArray(&placed, static_cast<std::size_t>(CountWantedRoots())))
        return 0;
    InitialiseGrowth();
    PlaceRoots(placed);
    return 1;
}

bool MemoryHoldsRoots()
{
    return static_cast<std::size_t>(CountWantedRoots()) <= AvailableMemory() / kBytesPerRoot;
}

void HandleRootMenu(int id)
{
    growthstate.roottype = id;
    if (id >= kRootOrigin && id <= kRootRingZ)
        SetRootName(RootTypeName(id));
}

SeedFileResult ReadSeedFile(const char *path)
{
    FILE *file = fopen(path, "r");
    if (file == nullptr)
        return kSeedFileUnopened;

    Vector *positions = nullptr;
    int count = 0;
    const bool enough = ReadPositions(file, &positions, &count);
    fclose(file);

    SeedFileResult result = kSeedFileOutOfMemory;
    if (enough)
        result = count > 0 ? StartFromPositions(path, positions, count) : StartFromOrigin();
    if (result != kSeedFileRead)
        free(positions);
    else if (options.debug)
        fprintf(stderr, "Read %d root seed positions\n", growthstate.nroots);
    return result;
}

// Number of roots at the start of cells that a restart keeps: kRootOrigin places one whatever nroots is.
static int CountPlacedRoots()
{
    const int limit = std::min(growthstate.nroots, ncells);
    int placed = 0;
    while (placed < limit && cells[placed].parent < 0)
        placed++;
    return placed;
}

// Number of roots that PlaceRoots places.
static int CountWantedRoots()
{
    if (growthstate.roottype == kRootOrigin)
        return 1;
    return growthstate.roottype <= kLastRootType ? std::max(growthstate.nroots, 0) : 0;
}

// Makes the wanted roots the aggregate; `placed`, which has room for them, becomes its array.
static void PlaceRoots(Particle *placed)
{
    const int count = CountWantedRoots();
    for (int i = 0; i < count; i++)
        placed[i] = {PlaceRoot(i), 0, -1, 0};
    if (count > 0)
        SetRootName(RootTypeName(growthstate.roottype));
    ReplaceCells(placed, count);
    SeedGenerators(growthstate.seed);
    nseeds = 0;
    growthstate.steptotal = 0;
}

static void ReplaceCells(Particle *particles, int count)
{
    free(cells);
    cells = particles;
    ncells = count;
    ForgetAggregate();
}

// Reads the file's positions. Returns false when memory does not hold them.
static bool ReadPositions(FILE *file, Vector **positions, int *count)
{
    Vector p;
    while (fscanf(file, "%lf %lf %lf\n", &p.x, &p.y, &p.z) == 3)
        if (!AppendToArray(positions, count, p))
            return false;
    return true;
}

// Starts a run from the positions. Takes ownership of the array if it returns kSeedFileRead.
static SeedFileResult StartFromPositions(const char *path, Vector *positions, int count)
{
    Particle *placed = nullptr;
    if (!ResizeArray(&placed, static_cast<std::size_t>(count)))
        return kSeedFileOutOfMemory;
    growthstate.nroots = 0; // otherwise InitialiseGrowth would include the old roots in the radius
    InitialiseGrowth();
    for (int i = 0; i < count; i++) {
        placed[i] = {positions[i], 0, -1, 0};
        growthstate.radius = std::max(growthstate.radius, Modulus(positions[i]));
    }
    ReplaceCells(placed, count);
    free(roots);
    roots = positions;
    growthstate.nroots = count;
    SetRootName(path);
    return kSeedFileRead;
}

static SeedFileResult StartFromOrigin()
{
    const GrowthState old = growthstate;
    growthstate.nroots = 1;
    growthstate.roottype = kRootOrigin;
    if (RestartFromRoots())
        return kSeedFileEmpty;
    growthstate = old;
    return kSeedFileOutOfMemory;
}

static void SetRootName(const char *name)
{
    snprintf(growthstate.rootname, sizeof growthstate.rootname, "%s", name);
}
