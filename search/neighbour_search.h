// Neighbour search: which particle a walker has come near to, without looking at all of them.
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

// No particle as far away as this is found.
constexpr double kFarthestPartner = 1e16;

// The radius of a ball about the walker in which no walker has a partner, below 0 where none is known. It follows from
// the particles, the branch length and the walker alone, whatever was searched before.
double FreeRadius();

// A ball in which no walker has a partner as long as no particle comes and no parameter changes. Empty: its squared
// radius is below 0.
struct FreeBall {
    Vector centre;
    double radius2;

    [[nodiscard]] bool Contains(Vector p) const
    {
        const Vector moved = p - centre;
        return DotProduct(moved, moved) < radius2;
    }
};

// The ball that the last search found.
FreeBall CurrentFreeBall();

// The last particle of cells is new: the index follows, wherever cells has moved to.
void AddToNeighbourIndex();

// The index is built anew at the next search. It notices by itself when the array, the count, the last
// particle or the branch length has changed; call this after changing other particles in place.
void DropNeighbourIndex();

// The same, and gives its memory back, about 40 bytes a particle.
void FreeNeighbourIndex();
