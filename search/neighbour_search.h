// Neighbour search: finds the particle that a walker sticks to without reading all particles.
//
// The answer is that of a scan over all particles, to the last bit; docs/neighbour-search.md says what is stored
// and why the answer is exact.

#pragma once

#include "geom/vector.h"

// The particle that the walker at growthstate.pos sticks to, or -1. It is what this scan finds: from the
// newest particle to the oldest, with association on only those of the next particle's class, keep the
// nearest, pass over particles of which a signed difference of a coordinate exceeds the smallest squared
// distance so far (kept), and stop at the first that is nearer than a branch length.
int FindPartner();

// A particle at this distance or farther is never found.
constexpr double kFarthestPartner = 1e16;

// Radius of a ball about the walker in which no walker finds a partner; below 0 if none is known. It depends only on
// the parameters, the particles and the walker's position, not on earlier searches.
double FreeRadius();

// A ball in which no walker finds a partner until a particle is added or a parameter changes. A negative radius2
// means an empty ball.
struct FreeBall {
    Vector centre;
    double radius2;

    [[nodiscard]] bool Contains(Vector p) const
    {
        const Vector moved = p - centre;
        return DotProduct(moved, moved) < radius2;
    }
};

// The ball that the last search found; empty if it is out of date.
FreeBall CurrentFreeBall();

// Adds the last particle of cells, which is new, to the index; the array may have moved.
void AddToNeighbourIndex();

// Makes the next search rebuild the index. A change of the array, the count, the last particle or the branch length
// is detected without this; call it after changing other particles in place.
void DropNeighbourIndex();

// Drops the index and frees its memory, about 40 bytes a particle.
void FreeNeighbourIndex();
