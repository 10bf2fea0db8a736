// Lists of particles by cube. Part of the neighbour search: docs/neighbour-search.md.

#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/shared.h"
#include "search/cube_grid.h"

// Linked lists, the newest particle first. While one thread inserts particles, others may visit them: they find every
// particle that was inserted before they started, and perhaps newer ones.
class CubeLists
{
public:
    // Starts empty lists with slots for `expected` particles and room for none.
    void Start(double reach, int expected)
    {
        inverse = 1 / (2 * kMargin * reach);
        std::size_t size = kSmallest;
        while (size < static_cast<std::size_t>(expected))
            size *= 2;
        newest.assign(size, 0);
        older.clear();
    }

    // Makes room for particles with numbers below `capacity`. Nobody may read the lists meanwhile.
    void Reserve(int capacity) { older.resize(static_cast<std::size_t>(capacity)); }

    // Number of particles there is room for
    [[nodiscard]] int Capacity() const { return static_cast<int>(older.size()); }

    // Whether so many particles would make the lists long
    [[nodiscard]] bool AreLong(int particles) const
    {
        return static_cast<std::size_t>(particles) > kMostPerSlot * newest.size();
    }

    [[nodiscard]] bool Holds(Vector p) const { return HasCube(inverse * p); }

    // Lists particle i, which is at p.
    void Insert(int i, Vector p)
    {
        const Vector c = inverse * p;
        uint32_t *const first = &newest[Slot(Floor(c.x), Floor(c.y), Floor(c.z))];
        older[i] = *first;
        StoreShared(first, static_cast<uint32_t>(i) + 1);
    }

    // Calls visit(i) for every particle i within the reach of p; may visit other particles, and a particle twice.
    template<typename Visit>
    void VisitNear(Vector p, Visit visit) const
    {
        // A cube's edge is twice the reach, so the ball about p meets at most two cubes along each axis.
        const Vector c = inverse * p;
        const int x = Floor(c.x - 0.5), y = Floor(c.y - 0.5), z = Floor(c.z - 0.5);
        uint32_t lists[8];
        for (int k = 0; k < 8; k++)
            lists[k] = LoadShared(&newest[Slot(x + (k & 1), y + (k >> 1 & 1), z + (k >> 2))]);
        for (const uint32_t list : lists)
            for (uint32_t at = list; at != 0; at = older[at - 1])
                visit(static_cast<int>(at - 1));
    }

    // Calls visit(i) for every particle i within a radius of p, and possibly for others, until visit returns false.
    // Returns false, without any visit, if it would have to read more lists than there are.
    template<typename Visit>
    bool VisitAround(Vector p, double radius, Visit visit) const
    {
        const double span = radius * inverse * kMargin;
        const int n = static_cast<int>(2 * span) + 2;
        if (static_cast<double>(n) * n * n > static_cast<double>(newest.size()))
            return false;
        const Vector c = inverse * p;
        const int x0 = Floor(c.x - span), y0 = Floor(c.y - span), z0 = Floor(c.z - span);
        for (int z = z0; z < z0 + n; z++)
            for (int y = y0; y < y0 + n; y++)
                for (int x = x0; x < x0 + n; x++)
                    for (uint32_t at = LoadShared(&newest[Slot(x, y, z)]); at != 0; at = older[at - 1])
                        if (!visit(static_cast<int>(at - 1)))
                            return true;
        return true;
    }

private:
    static constexpr std::size_t kSmallest = 1024;
    // Particles per slot from which the lists are long
    static constexpr std::size_t kMostPerSlot = 1;

    // The slot (hash) of a cube, combined from a part for each coordinate. The 4 x 4 x 4 cubes of a block lie
    // together in memory; blocks with the same slots share their lists.
    [[nodiscard]] std::size_t Slot(int x, int y, int z) const
    {
        return (Mix(x, 73856093U, 0) ^ Mix(y, 19349663U, 2) ^ Mix(z, 83492791U, 4)) & (newest.size() - 1);
    }

    static std::size_t Mix(int coordinate, std::size_t factor, int shift)
    {
        const auto block = static_cast<std::size_t>(coordinate >> 2);
        const auto within = static_cast<std::size_t>(coordinate & 3);
        return block * factor << 6 | within << shift;
    }

    double inverse = 0;           // cubes per unit of length
    std::vector<uint32_t> newest; // by slot: 1 + the newest particle of its list, or 0
    std::vector<uint32_t> older;  // by particle: 1 + the next older one of its list, or 0
};
