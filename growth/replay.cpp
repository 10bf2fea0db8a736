#include "growth/replay.h"

#include <algorithm>

#include "growth/aggregate.h"
#include "growth/flows.h"
#include "growth/state.h"

Replay::Replay() : allcells(ncells), maxweight(growthstate.maxweight)
{
    weights.reserve(static_cast<std::size_t>(ncells));
    for (int i = 0; i < ncells; i++) {
        weights.push_back(cells[i].weight);
        cells[i].weight = 0;
    }
    growthstate.maxweight = 0;
    ncells = 0;
    while (ncells < allcells && cells[ncells].parent < 0)
        ncells++;
    ForgetAggregate();
}

Replay::~Replay()
{
    ncells = allcells;
    for (int i = 0; i < ncells; i++)
        cells[i].weight = weights[i];
    growthstate.maxweight = maxweight;
    ForgetAggregate();
}

void Replay::GrowTo(int count) const
{
    for (; ncells < std::min(count, allcells); ncells++)
        growthstate.maxweight = std::max(growthstate.maxweight, AddFlow(cells[ncells].parent));
    ForgetAggregate();
}
