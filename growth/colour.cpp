#include "growth/colour.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "growth/state.h"

// Ranges shorter than this are widened.
constexpr double kShortestRange = 1e-6;
constexpr int kFlowMap = 1;

static const Colour kRootColours[] = {
    {1, 0, 0},          {0, 1, 0},       {0, 0, 1},          {1, 1, 0},     {0, 1, 1},     {1, 0, 1},
    {1, 0.5, 0.5},      {0.5, 1, 0.5},   {0.5, 0.5, 1},      {1, 1, 0.5},   {0.5, 1, 1},   {1, 0.5, 1},
    {0.5, 0, 0},        {0, 0.5, 0},     {0, 0, 0.5},        {0.5, 0.5, 0}, {0, 0.5, 0.5}, {0.5, 0, 0.5},
    {0.25, 0.25, 0.25}, {0.5, 0.5, 0.5}, {0.75, 0.75, 0.75},
};

Colour ChooseColour(int index, int mode)
{
    const bool byroot =
        growthstate.association && growthstate.nroots > 1 && mode >= 1 && mode <= kAggregateLines;
    if (byroot)
        return kRootColours[index % growthstate.nroots % static_cast<int>(std::size(kRootColours))];
    return GetColour(std::log(cells[index].weight + 1), 0, std::log(growthstate.maxweight / 3 + 1), kFlowMap);
}

Colour GetColour(double v, double vmin, double vmax, int type)
{
    double lo = std::min(vmin, vmax);
    double hi = std::max(vmin, vmax);
    if (hi - lo < kShortestRange) {
        lo -= 1;
        hi += 1;
    }
    if (type != kFlowMap)
        return {1, 1, 1};

    v = std::min(std::max(v, lo), hi);
    const double dv = hi - lo;
    if (v < lo + 0.25 * dv)
        return {0, 4 * (v - lo) / dv, 1};
    if (v < lo + 0.5 * dv)
        return {0, 1, 1 + 4 * (lo + 0.25 * dv - v) / dv};
    if (v < lo + 0.75 * dv)
        return {4 * (v - lo - 0.5 * dv) / dv, 1, 0};
    return {1, 1 + 4 * (lo + 0.75 * dv - v) / dv, 0};
}
