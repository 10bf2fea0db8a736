#include "growth/aggregate.h"

#include <algorithm>

#include "base/array.h"
#include "growth/deferred_flows.h"
#include "growth/state.h"
#include "search/neighbour_search.h"

namespace
{
// What growthstate.radius was when it was last known to be the largest of the first `count` particles.
struct KnownRadius {
    int count;
    double radius;
};

// Room for particles in the array of cells while it holds `count` of them; nullptr: there is no room but for those.
struct Room {
    const Particle *array;
    int count, capacity;
};
} // namespace

static KnownRadius knownradius = {-1, 0};
static Room room = {nullptr, 0, 0};
static unsigned aggregatenumber = 0;

bool AddParticle(Vector pos, int partner)
{
    const Particle particle = {pos, 0, partner, 0};
    const int capacity = ParticleCapacity();
    if (ncells < capacity) {
        cells[ncells] = particle;
        ncells++;
        room = {cells, ncells, capacity};
    } else if (!AppendToArray(&cells, &ncells, particle)) {
        growthstate.running = 0;
        return false;
    }
    return true;
}

bool ReserveParticles(int count)
{
    if (count <= ParticleCapacity())
        return true;
    const bool isindexed = IsNeighbourIndexCurrent();
    if (!ResizeArray(&cells, static_cast<std::size_t>(count)))
        return false;
    if (isindexed)
        MoveNeighbourIndex();
    room = {cells, ncells, count};
    return true;
}

int ParticleCapacity()
{
    return room.array == cells && room.count == ncells ? room.capacity : ncells;
}

// Where the radius was the largest distance before the newest particle, only that one can raise it.
void UpdateRadius()
{
    const bool waslargest = knownradius.count == ncells - 1 && knownradius.radius == growthstate.radius;
    for (int i = waslargest ? ncells - 1 : 0; i < ncells; i++)
        growthstate.radius = std::max(growthstate.radius, Modulus(cells[i].p));
    knownradius = {ncells, growthstate.radius};
}

void ForgetAggregate()
{
    DropNeighbourIndex();
    knownradius.count = -1;
    room.array = nullptr;
    ForgetFlows();
    aggregatenumber++;
}

unsigned AggregateNumber()
{
    return aggregatenumber;
}
