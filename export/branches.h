// The loop over all branches, for export formats that write one branch after another

#pragma once

#include <cmath>

#include "export/appearance.h"
#include "growth/state.h"
#include "surface/surface.h"

// A branch, from a particle's parent to the particle.
struct Branch {
    int parent, index; // indices of cells
    Vector from, to;
    double fromradius, toradius;
    Colour colour;
};

// Calls write(branch) for each branch, in the order of cells. Throws std::bad_alloc if memory does not suffice.
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

// Whether exports include the constraint surface: it has faces, and its drawing mode shows it.
inline bool IsSurfaceSaved()
{
    return nstltri > 0 && options.surfacemode >= kSurfaceWireframe;
}
