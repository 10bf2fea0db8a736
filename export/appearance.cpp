#include "export/appearance.h"

#include <iterator>

// Ranges shorter than this are widened.
constexpr double kShortestRange = 1e-6;
constexpr int kFlowMap = 1;

static const Colour kRootColours[] = {
    {1, 0, 0},          {0, 1, 0},       {0, 0, 1},          {1, 1, 0},     {0, 1, 1},     {1, 0, 1},
    {1, 0.5, 0.5},      {0.5, 1, 0.5},   {0.5, 0.5, 1},      {1, 1, 0.5},   {0.5, 1, 1},   {1, 0.5, 1},
    {0.5, 0, 0},        {0, 0.5, 0},     {0, 0, 0.5},        {0.5, 0.5, 0}, {0, 0.5, 0.5}, {0.5, 0, 0.5},
    {0.25, 0.25, 0.25}, {0.5, 0.5, 0.5}, {0.75, 0.75, 0.75},
};

ColourMap::ColourMap(double vmin, double vmax) : lo(std::min(vmin, vmax)), hi(std::max(vmin, vmax))
{
    if (hi - lo < kShortestRange) {
        lo -= 1;
        hi += 1;
    }
    dv = hi - lo;
    cyan = lo + 0.25 * dv;
    green = lo + 0.5 * dv;
    yellow = lo + 0.75 * dv;
}

std::vector<FlowLogs::Remembered> FlowLogs::all;

FlowLogs::FlowLogs()
{
    if (all.size() < static_cast<std::size_t>(ncells))
        all.resize(static_cast<std::size_t>(ncells));
    remembered = all.data();
}

BranchThickness::BranchThickness()
    : scale((growthstate.thickfrom - growthstate.thickto) / Logarithm(growthstate.maxweight + 1))
{
}

ParticleColours::ParticleColours(int mode)
    : byroot(growthstate.association && growthstate.nroots > 1 && mode >= 1 && mode <= kAggregateLines),
      flows(0, Logarithm(growthstate.maxweight / 3 + 1))
{
}

Colour RootColour(int index)
{
    return kRootColours[index % growthstate.nroots % static_cast<int>(std::size(kRootColours))];
}

Colour ChooseColour(int index, int mode)
{
    return ParticleColours(mode).Of(index);
}

Colour GetColour(double v, double vmin, double vmax, int type)
{
    return type == kFlowMap ? ColourMap(vmin, vmax).Of(v) : Colour{1, 1, 1};
}
