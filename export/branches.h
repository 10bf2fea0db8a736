// The walk over all branches that the formats of single branches share.

#pragma once

#include <cmath>

#include "export/appearance.h"
#include "growth/state.h"
#include "surface/surface.h"

// A branch, from a particle's parent to the particle.
struct Branch {
    int parent, index; // of cells
    Vector from, to;
    double fromradius, toradius;
    Colour colour;
};

// Calls write(branch) for each branch, in the order of cells. Memory may run out: std::bad_alloc.
template<typename Write>
void ForEachBranch(Write write)
{
    const BranchThickness thickness;
    const ParticleColours colours(options.dlamode);
    for (int i = 0; i < ncells; i++) {
        const int parent = cells[i].parent;
        if (parent >= 0)
            write(Branch{parent, i, cells[parent].p, cells[i].p, thickness.Of(parent), thickness.Of(i),
                         colours.Of(i)});
    }
}

// Whether the constraint surface belongs to what is saved: it has faces, and its drawing mode shows it.
inline bool IsSurfaceSaved()
{
    return nstltri > 0 && options.surfacemode >= kSurfaceWireframe;
}
