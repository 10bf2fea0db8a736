#include "growth/sources.h"

#include <climits>
#include <cmath>

#include "growth/state.h"
#include "growth/walker.h"
#include "surface/surface.h"

namespace
{
// How one component of a launch direction is computed, before the direction is normalised; u is a uniform draw.
enum Component {
    kCentred, // u - 0.5
    kLateral, // (u - 0.5) s, the narrow spread of the axis sources
    kPlus,    // 1
    kMinus,   // -1
    kSide,    // -1 or 1 at random
    kWide,    // 2u - 1
    kHalf     // 0.5 u
};

struct Source {
    const char *name;
    Component x, y, z;
};
} // namespace

// Indexed by SourceType; element 0 is used for all other values.
static const Source kSources[] = {
    {"Unknown", kCentred, kCentred, kCentred},
    {"Sphere", kCentred, kCentred, kCentred},
    {"Single axis (+x)", kPlus, kLateral, kLateral},
    {"Single axis (-x)", kMinus, kLateral, kLateral},
    {"Double axis (x)", kSide, kLateral, kLateral},
    {"Single axis (+y)", kLateral, kPlus, kLateral},
    {"Single axis (-y)", kLateral, kMinus, kLateral},
    {"Double axis (y)", kLateral, kSide, kLateral},
    {"Single axis (+z)", kLateral, kLateral, kPlus},
    {"Single axis (-z)", kLateral, kLateral, kMinus},
    {"Double axis (z)", kLateral, kLateral, kSide},
    {"Plane (x)", kPlus, kWide, kWide},
    {"Plane (y)", kWide, kPlus, kWide},
    {"Plane (z)", kWide, kWide, kPlus},
    {"Hemisphere (x)", kHalf, kCentred, kCentred},
    {"Hemisphere (y)", kCentred, kHalf, kCentred},
    {"Hemisphere (z)", kCentred, kCentred, kHalf},
    {"STL surface", kCentred, kCentred, kCentred},
    {"Infinity", kCentred, kCentred, kCentred}, // its directions are uniform: LaunchPosition
};

static const Source &FindSource(int sourcetype);
template<typename Draws>
static Vector DrawLaunch(int sourcetype, double launchradius, Draws *draws);
template<typename Draws>
static double DrawComponent(Component component, double lateral, Draws *draws);

Vector *GetNewParticle(Vector *p, int sourcetype, double launchradius)
{
    RunDraws draws;
    *p = DrawLaunch(sourcetype, launchradius, &draws);
    return p;
}

Vector LaunchPosition(int sourcetype, double launchradius, Stream *draws)
{
    if (sourcetype == kSourceInfinity)
        return launchradius * DrawDirection(draws);
    return DrawLaunch(sourcetype, launchradius, draws);
}

// G. Marsaglia, "Choosing a Point from the Surface of a Sphere", Ann. Math. Stat. 43 (1972) 645.
Vector DrawDirection(Stream *draws)
{
    double u = 0, v = 0, square = 0;
    do {
        u = 2 * draws->Uniform() - 1;
        v = 2 * draws->Uniform() - 1;
        square = u * u + v * v;
    } while (square >= 1);
    const double lateral = 2 * std::sqrt(1 - square);
    return {lateral * u, lateral * v, 1 - 2 * square};
}

template<typename Draws>
static Vector DrawLaunch(int sourcetype, double launchradius, Draws *draws)
{
    Vector d;
    if (sourcetype == kSourceSurface && nstltri > 0) {
        d = stltri[draws->Integer() % nstltri].midpoint;
    } else {
        const Source &source = FindSource(sourcetype);
        const double lateral = 0.1 * growthstate.branchlength;
        d.x = DrawComponent(source.x, lateral, draws);
        d.y = DrawComponent(source.y, lateral, draws);
        d.z = DrawComponent(source.z, lateral, draws);
    }
    Normalise(&d);
    return launchradius * d;
}

void RecordLaunch(Vector pos)
{
    seeds[nseeds % kSeedRing] = pos;
    if (nseeds == INT_MAX)
        nseeds = kSeedRing + nseeds % kSeedRing;
    nseeds++;
}

const char *SourceName(int sourcetype)
{
    return FindSource(sourcetype).name;
}

void HandleSourceMenu(int id)
{
    growthstate.sourcetype = id;
}

static const Source &FindSource(int sourcetype)
{
    return kSources[sourcetype >= kSourceSphere && sourcetype <= kSourceInfinity ? sourcetype : 0];
}

template<typename Draws>
static double DrawComponent(Component component, double lateral, Draws *draws)
{
    switch (component) {
    case kCentred:
        return draws->Uniform() - 0.5;
    case kLateral:
        return (draws->Uniform() - 0.5) * lateral;
    case kPlus:
        return 1;
    case kMinus:
        return -1;
    case kSide:
        return draws->Uniform() < 0.5 ? -1 : 1;
    case kWide:
        return 2 * draws->Uniform() - 1;
    case kHalf:
        return 0.5 * draws->Uniform();
    }
    return 0;
}
