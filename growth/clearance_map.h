// How far the nearest particle is at least, by cube of space. Part of the neighbour search: docs/neighbour-search.md.

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "growth/cube_grid.h"

// Levels of cubes about the origin, each level's of twice the edge of the level below. A cube's bit is
// set when a particle lies in it or in one of its 26 neighbours; so a point in a cube whose bit is not set is
// at least an edge away from every particle.
class ClearanceMap
{
public:
    // A map of the cube from -extent to extent whose smallest cubes have at least the given edge.
    // It takes at most `bytes`, and coarser cubes where it must.
    void Start(double smallestedge, double wantedextent, double bytes)
    {
        extent = wantedextent;
        edge = kMargin * smallestedge;
        constexpr double cubesperbyte = 4; // two bits a cube
        while (std::pow(2 * extent / edge + 1, 3) > cubesperbyte * bytes)
            edge *= 2;
        inverse = 1 / edge;
        int size = static_cast<int>(2 * extent / edge) + 1;
        for (;;) {
            levels.push_back(
                Level{size, std::vector<uint64_t>(Words(size)), std::vector<uint64_t>(Words(size))});
            if (size <= kCoarsest)
                break;
            size = (size - 1) / 2 + 1;
        }
        last = 0;
    }

    void Mark(Vector p)
    {
        int x, y, z;
        if (!FindCube(p, &x, &y, &z))
            return;
        for (Level &level : levels) {
            if (!level.Occupy(x, y, z))
                return; // and so are the cubes around it, on this level and on those above
            x >>= 1;
            y >>= 1;
            z >>= 1;
        }
    }

    // A distance within which there is no particle of p, or 0 when none is known.
    double Clearance(Vector p)
    {
        int x, y, z;
        if (!FindCube(p, &x, &y, &z))
            return 0;
        if (!levels[0].Contains(x, y, z))
            return 0;
        // Walkers move little between two questions: the search starts beside the last answer's level.
        const int top = static_cast<int>(levels.size()) - 1;
        int l = last < top ? last + 1 : top;
        const auto marked = [&](int k) { return levels[k].IsMarked(x >> k, y >> k, z >> k); };
        if (marked(l)) {
            do
                l--;
            while (l >= 0 && marked(l));
        } else {
            while (l < top && !marked(l + 1))
                l++;
        }
        last = l < 0 ? 0 : l;
        return l < 0 ? 0 : std::ldexp(edge, l) / kMargin;
    }

private:
    static constexpr int kCoarsest = 4;

    struct Level {
        int size;                       // cubes along each axis
        std::vector<uint64_t> near;     // a particle lies in the cube or in a neighbour
        std::vector<uint64_t> occupied; // a particle lies in the cube

        [[nodiscard]] bool IsMarked(int x, int y, int z) const { return Test(near, x, y, z); }

        [[nodiscard]] bool Contains(int x, int y, int z) const
        {
            return x >= 0 && y >= 0 && z >= 0 && x < size && y < size && z < size;
        }

        // A particle lies in the cube, which may be outside of the map. Returns false where that was known.
        bool Occupy(int x, int y, int z)
        {
            if (Contains(x, y, z)) {
                if (Test(occupied, x, y, z))
                    return false;
                Set(&occupied, x, y, z);
            }
            for (int k = z - 1; k <= z + 1; k++)
                for (int j = y - 1; j <= y + 1; j++)
                    for (int i = x - 1; i <= x + 1; i++)
                        if (Contains(i, j, k))
                            Set(&near, i, j, k);
            return true;
        }

        [[nodiscard]] bool Test(const std::vector<uint64_t> &bits, int x, int y, int z) const
        {
            const std::size_t bit = Bit(x, y, z);
            return (bits[bit / 64] >> (bit % 64) & 1) != 0;
        }

        void Set(std::vector<uint64_t> *bits, int x, int y, int z) const
        {
            const std::size_t bit = Bit(x, y, z);
            (*bits)[bit / 64] |= uint64_t{1} << (bit % 64);
        }

        [[nodiscard]] std::size_t Bit(int x, int y, int z) const
        {
            const auto n = static_cast<std::size_t>(size);
            return (static_cast<std::size_t>(z) * n + static_cast<std::size_t>(y)) * n +
                   static_cast<std::size_t>(x);
        }
    };

    static std::size_t Words(int size)
    {
        const auto n = static_cast<std::size_t>(size);
        return (n * n * n + 63) / 64;
    }

    // The cube of the lowest level; returns false for a point too far away to have one.
    bool FindCube(Vector p, int *x, int *y, int *z) const
    {
        const Vector c = {(p.x + extent) * inverse, (p.y + extent) * inverse, (p.z + extent) * inverse};
        if (!HasCube(c))
            return false;
        *x = Floor(c.x);
        *y = Floor(c.y);
        *z = Floor(c.z);
        return true;
    }

    std::vector<Level> levels; // the finest first
    double extent = 0;
    double edge = 0;    // of the finest cubes
    double inverse = 0; // its reciprocal
    int last = 0;       // level of the last answer
};
