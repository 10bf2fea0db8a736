#include "growth/sources.h"

#include "growth/generators.h"
#include "growth/state.h"
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
};

static const Source &FindSource(int sourcetype);
static double DrawComponent(Component component, double lateral);

Vector *GetNewParticle(Vector *p, int sourcetype, double launchradius)
{
    Vector d;
    if (sourcetype == kSourceSurface && nstltri > 0) {
        d = stltri[DrawInteger() % nstltri].midpoint;
    } else {
        const Source &source = FindSource(sourcetype);
        const double lateral = 0.1 * growthstate.branchlength;
        d.x = DrawComponent(source.x, lateral);
        d.y = DrawComponent(source.y, lateral);
        d.z = DrawComponent(source.z, lateral);
    }
    Normalise(&d);
    *p = launchradius * d;
    return p;
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
    return kSources[sourcetype >= kSourceSphere && sourcetype <= kSourceSurface ? sourcetype : 0];
}

static double DrawComponent(Component component, double lateral)
{
    switch (component) {
    case kCentred:
        return DrawUniform() - 0.5;
    case kLateral:
        return (DrawUniform() - 0.5) * lateral;
    case kPlus:
        return 1;
    case kMinus:
        return -1;
    case kSide:
        return DrawUniform() < 0.5 ? -1 : 1;
    case kWide:
        return 2 * DrawUniform() - 1;
    case kHalf:
        return 0.5 * DrawUniform();
    }
    return 0;
}
