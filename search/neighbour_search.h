// Neighbour search: finds the particle that a walker sticks to without reading all particles.
//
// The answer is that of a scan over all particles, to the last bit; docs/neighbour-search.md says what is stored
// and why the answer is exact.

#pragma once

#include <vector>

#include "geom/vector.h"
#include "search/clearance_map.h"

// A particle at this distance or farther is never found.
constexpr double kFarthestPartner = 1e16;

// The walker of steps, at growthstate.pos -------------------------------------------------------------------

// The particle that the walker at growthstate.pos sticks to, or -1. It is what this scan finds: from the
// newest particle to the oldest, with association on only those of the next particle's class, keep the
// nearest, pass over particles of which a signed difference of a coordinate exceeds the smallest squared
// distance so far (kept), and stop at the first that is nearer than a branch length.
int FindPartner();

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

// Other walkers ----------------------------------------------------------------------------------------------

// What a walker was told about the aggregate, from which follows whether a newer particle would have changed it.
struct SearchNotes {
    std::vector<UnsetBit> bits;   // bits of clearance maps that were not set
    std::vector<Vector> searched; // where particles within a branch length were searched for
    Vector min, max;              // the box of these places

    void Clear();
};

// A walker's view of the aggregate.
struct Searcher {
    int number = 0;               // of the particle that the walker will become
    int seen = 0;                 // particles that were there when it started
    int scale = 0;                // of the clearance last found in a map
    SearchNotes *notes = nullptr; // records what it is told, if not nullptr
};

// Makes the index current, which the two functions below and StillHold require. Returns false if memory does not
// suffice. An aggregate that cannot be indexed has no index: no free radius is known, and all particles are scanned.
bool PrepareSearch();

// Radius of a ball about p in which no walker finds a partner; below 0 if none is known. It depends only on the
// parameters, the particles and p, not on earlier searches.
double FreeRadius(Vector p, Searcher *searcher);

// What FindPartner returns for a walker at p, where FreeRadius has returned less than 0.
int FindPartnerNear(Vector p, Searcher *searcher);

// Whether the notes of a walker, which had seen so many particles, are still true of all particles that there are now.
bool StillHold(const SearchNotes &notes, int seen);

// Makes room in the index for `particles` particles: until then, AddToNeighbourIndex may run beside searches of other
// threads, as long as it returns true. Returns false if that is impossible.
bool ReserveSearch(int particles);

// Counts the times that the clearance maps were made anew or extended: notes from before do not hold.
unsigned SearchNumber();

// The index ---------------------------------------------------------------------------------------------------

// Adds the last particle of cells, which is new, to the index; the array may have moved. Returns false if the index has
// to be prepared again before a search.
bool AddToNeighbourIndex();

// Whether the index is that of the present particles, and states that the array of these particles has moved.
bool IsNeighbourIndexCurrent();
void MoveNeighbourIndex();

// Makes the next search rebuild the index. A change of the array, the count, the last particle or the branch length
// is detected without this; call it after changing other particles in place.
void DropNeighbourIndex();

// Drops the index and frees its memory, about 35 bytes a particle.
void FreeNeighbourIndex();
