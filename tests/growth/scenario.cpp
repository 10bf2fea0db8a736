#include "growth/scenario.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/array.h"
#include "growth/generators.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "surface/surface.h"

// Bit for bit, but for the bits of what is not a number.
static bool Same(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) || memcmp(&a, &b, sizeof a) == 0;
}

static bool Same(Vector a, Vector b)
{
    return Same(a.x, b.x) && Same(a.y, b.y) && Same(a.z, b.z);
}

static std::string Exact(Vector v)
{
    char text[100];
    snprintf(text, sizeof text, "%a %a %a", v.x, v.y, v.z);
    return text;
}

void StartAfresh()
{
    InitialiseGrowth();
    SetProgramDefaults();
    growthstate.pos = {0, 0, 0};
    for (const char *group : {"growth", "roots", "source", "drawing"})
        SetDefaults(group);
    strcpy(growthstate.surfacename, "None");
    nstltri = 0;
    UpdateSTL();
    InitialiseGrowth();
    ResetSeeds();
}

Outcome TakeOutcome()
{
    Outcome o;
    o.cells.assign(cells, cells + ncells);
    o.seeds.assign(seeds, seeds + kSeedRing);
    o.pos = growthstate.pos;
    o.radius = growthstate.radius;
    o.maxweight = growthstate.maxweight;
    o.stepcount = growthstate.stepcount;
    o.nseeds = nseeds;
    o.nextrand = DrawInteger();
    o.nextdrand = DrawUniform();
    return o;
}

std::string Difference(const Outcome &a, const Outcome &b)
{
    for (size_t i = 0; i < a.cells.size() && i < b.cells.size(); i++)
        if (!Same(a.cells[i].p, b.cells[i].p) || !Same(a.cells[i].weight, b.cells[i].weight) ||
            a.cells[i].parent != b.cells[i].parent)
            return "particle " + std::to_string(i) + " of " + std::to_string(a.cells.size());
    if (a.cells.size() != b.cells.size())
        return "ncells " + std::to_string(a.cells.size()) + " and " + std::to_string(b.cells.size());
    for (size_t i = 0; i < a.seeds.size(); i++)
        if (!Same(a.seeds[i], b.seeds[i]))
            return "launch " + std::to_string(i);
    if (!Same(a.pos, b.pos))
        return "walker at " + Exact(a.pos) + " and " + Exact(b.pos);
    if (!Same(a.radius, b.radius) || !Same(a.maxweight, b.maxweight))
        return "radius or maxweight";
    if (a.stepcount != b.stepcount || a.nseeds != b.nseeds)
        return "stepcount or nseeds";
    if (a.nextrand != b.nextrand)
        return "state of rand";
    if (!Same(a.nextdrand, b.nextdrand))
        return "state of drand48";
    return "";
}

unsigned long long HashParticles(int count)
{
    unsigned long long hash = 14695981039346656037ULL;
    const auto add = [&](const void *data, size_t size) {
        for (size_t i = 0; i < size; i++)
            hash = (hash ^ static_cast<const unsigned char *>(data)[i]) * 1099511628211ULL;
    };
    for (int i = 0; i < count; i++) {
        add(&cells[i].p, sizeof cells[i].p);
        add(&cells[i].weight, sizeof cells[i].weight);
        add(&cells[i].parent, sizeof cells[i].parent);
    }
    return hash;
}

void Grow(GrowthStep step, int particles, long steps)
{
    for (long i = 0; i < steps && ncells < particles; i++)
        step();
}

void SetBoxSurface(double size, bool inward)
{
    const double h = size / 2;
    nstltri = 0;
    for (int axis = 0; axis < 3; axis++) {
        for (const double side : {-h, h}) {
            // Corners of a side in counterclockwise order seen from outside for side > 0, then flipped as
            // needed.
            double corner[4][3];
            for (int k = 0; k < 4; k++) {
                corner[k][axis] = side;
                corner[k][(axis + 1) % 3] = k == 1 || k == 2 ? h : -h;
                corner[k][(axis + 2) % 3] = k >= 2 ? h : -h;
            }
            const auto vertex = [&](int k) { return Vector{corner[k][0], corner[k][1], corner[k][2]}; };
            const bool flip = (side < 0) != inward;
            for (const int k : {1, 2}) {
                Triangle t = {};
                t.p[0] = vertex(0);
                t.p[1] = vertex(flip ? k + 1 : k);
                t.p[2] = vertex(flip ? k : k + 1);
                AppendToArray(&stltri, &nstltri, t);
            }
        }
    }
    UpdateSTL();
}
