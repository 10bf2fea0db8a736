// Colours and thickness of branches, shared by the view and the exports.

#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "geom/colour.h"
#include "geom/elementary.h"
#include "growth/state.h"

// A map from blue through cyan, green and yellow to red over a range.
class ColourMap
{
public:
    // The bounds may come in either order; a range shorter than 1e-6 is widened by 1 on both sides.
    ColourMap(double vmin, double vmax);
    // Colour of v, clamped to the range.
    Colour Of(double v) const;

private:
    double lo, hi, dv, cyan, green, yellow;
};

// The logarithms of all particles' flows; not valid after growth. All objects share one memory of the logarithms,
// since most flows do not change between two frames.
class FlowLogs
{
public:
    FlowLogs();
    // log(weight + 1) of a particle.
    double Of(int index) const;

private:
    struct Remembered {
        double weight = 0, log = 0;
    };
    static std::vector<Remembered> all;
    Remembered *remembered; // the data of `all`
};

// The thickness of branches at all particles; not valid after growth. It is a radius, linear in the logarithm of the
// flow, from thickto at the tips to thickfrom at the largest flow.
class BranchThickness
{
public:
    BranchThickness();
    double Of(int index) const { return growthstate.thickto + scale * logs.Of(index); }

private:
    double scale;
    FlowLogs logs;
};

// The colours of all particles in one drawing mode; not valid after growth
class ParticleColours
{
public:
    explicit ParticleColours(int mode);
    // The same as ChooseColour, faster for many particles
    Colour Of(int index) const;

private:
    bool byroot;
    FlowLogs logs;
    ColourMap flows;
};

// Colour of particle `index` of cells in drawing mode `mode` (options.dlamode): with association on and two
// or more roots, modes up to kAggregateLines show the particle's class (index mod nroots, whatever root it
// descends from). Otherwise the colour shows its flow on a logarithmic scale that ends, on purpose, at a third
// of the largest flow.
Colour ChooseColour(int index, int mode);

// Colour of the class of particle `index` among several roots.
Colour RootColour(int index);

// Colour of v in the colour map `type` over the range from vmin to vmax (in either order; a range shorter than
// 1e-6 is widened by 1 on both sides). v is clamped to the range. Type 1 runs from blue through cyan, green
// and yellow to red; any other type is white.
Colour GetColour(double v, double vmin, double vmax, int type);

inline Colour ColourMap::Of(double v) const
{
    v = std::min(std::max(v, lo), hi);
    if (v < cyan)
        return {0, 4 * (v - lo) / dv, 1};
    if (v < green)
        return {0, 1, 1 + 4 * (cyan - v) / dv};
    if (v < yellow)
        return {4 * (v - lo - 0.5 * dv) / dv, 1, 0};
    return {1, 1 + 4 * (yellow - v) / dv, 0};
}

inline double FlowLogs::Of(int index) const
{
    Remembered &last = remembered[index];
    const double weight = cells[index].weight;
    if (last.weight != weight)
        last = {weight, Logarithm(weight + 1)};
    return last.log;
}

inline Colour ParticleColours::Of(int index) const
{
    return byroot ? RootColour(index) : flows.Of(logs.Of(index));
}
