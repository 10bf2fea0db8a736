// How far the nearest particle is at least, by cube of space. Part of the neighbour search: docs/neighbour-search.md.

#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "growth/cube_grid.h"

// Levels of cubes that meet at the origin. A cube's bit is set when a particle lies in it or in a cube that comes
// nearer to it than the level's reach; so a point in a cube whose bit is not set is at least that far away from
// every particle. The answers depend on the particles and the smallest edge alone, not on when the map was made.
class ClearanceMap
{
public:
    // What finds the bricks of a map that covers -extent to extent, in bytes.
    static double IndexBytes(double edge, double extent)
    {
        constexpr double kIndices = 2.3; // of the finest edge; and the others together
        const double along = 2 * extent / (kBrickEdge * edge) + 2;
        return kIndices * sizeof(uint32_t) * along * along * along;
    }

    // A map of the cube from -extent to extent whose smallest cubes have the given edge.
    void Start(double smallestedge, double wantedextent)
    {
        extent = wantedextent;
        inverse = 1 / smallestedge;
        levels.clear();
        for (int shift = 0;; shift++) {
            for (const int squaredreach : {shift == 0 ? 1 : 5, 9})
                levels.push_back(Level(smallestedge, shift, squaredreach, BricksFromOrigin(shift)));
            if (BricksFromOrigin(shift) == 1)
                break;
        }
        last = 0;
    }

    void Mark(Vector p)
    {
        const Vector c = inverse * p;
        if (!HasCube(c))
            return;
        const Cube cube = {Floor(c.x), Floor(c.y), Floor(c.z)};
        for (Level &level : levels)
            if (!level.Occupy(cube >> level.shift))
                return; // and so are the cubes around it, on this level and on those above
    }

    // A distance within which there is no particle of p, or 0 when none is known: that of the last level that is not
    // marked there. What is marked on one level is so on those above.
    double Clearance(Vector p)
    {
        if (!(std::fabs(p.x) < extent && std::fabs(p.y) < extent && std::fabs(p.z) < extent))
            return 0;
        const Vector c = inverse * p;
        const Cube cube = {Floor(c.x), Floor(c.y), Floor(c.z)};
        const auto marked = [&](int l) { return levels[l].IsMarked(cube >> levels[l].shift); };
        // Walkers move little between two questions: the search starts beside the last answer's level.
        const int top = static_cast<int>(levels.size()) - 1;
        int l = std::min(last + 1, top);
        if (marked(l)) {
            do
                l--;
            while (l >= 0 && marked(l));
        } else {
            while (l < top && !marked(l + 1))
                l++;
        }
        last = std::max(l, 0);
        return l < 0 ? 0 : levels[l].distance;
    }

private:
    static constexpr int kBrickEdge = 8;

    struct Cube {
        int x, y, z;
        Cube operator>>(int shift) const { return {x >> shift, y >> shift, z >> shift}; }
    };

    // Bits of 8 x 8 x 8 cubes: a word for each z, a byte of it for each y.
    struct alignas(64) Brick {
        std::array<uint64_t, kBrickEdge> words;
    };

    struct Level {
        Level(double smallestedge, int steps, int squaredreach, int half)
            : shift(steps), distance(std::sqrt(squaredreach) * std::ldexp(smallestedge, steps) / kMargin),
              bricksfromorigin(half), index(8 * static_cast<std::size_t>(half) * half * half), near(1),
              occupied(1)
        {
            const auto gap = [](int d) { return std::max(std::abs(d) - 1, 0); };
            const int reach = 1 + static_cast<int>(std::sqrt(squaredreach));
            for (int dz = -reach; dz <= reach; dz++)
                for (int dy = -reach; dy <= reach; dy++)
                    for (int dx = reach; dx >= 0; dx--)
                        if (gap(dx) * gap(dx) + gap(dy) * gap(dy) + gap(dz) * gap(dz) < squaredreach) {
                            rows.push_back({dy, dz, dx});
                            break;
                        }
        }

        [[nodiscard]] bool IsMarked(Cube c) const
        {
            return (near[index[Place(c)]].words[c.z & 7] & Bit(c)) != 0;
        }

        // A particle lies in the cube, which may be outside of the map. Returns false where that was known.
        bool Occupy(Cube c)
        {
            if (Contains(c)) {
                uint64_t &word = occupied[MakeBrick(c)].words[c.z & 7];
                if ((word & Bit(c)) != 0)
                    return false;
                word |= Bit(c);
            }
            for (const Row &row : rows)
                MarkRow({c.x, c.y + row.dy, c.z + row.dz}, row.half);
            return true;
        }

        // Marks so many cubes to either side of one.
        void MarkRow(Cube c, int half)
        {
            const int cubes = bricksfromorigin * kBrickEdge;
            if (c.y < -cubes || c.z < -cubes || c.y >= cubes || c.z >= cubes)
                return;
            const int end = std::min(c.x + half + 1, cubes);
            for (int x = std::max(c.x - half, -cubes); x < end;) {
                const int stop = std::min(end, (x | 7) + 1);
                const uint64_t row = (uint64_t{1} << (stop - x)) - 1;
                const Cube first = {x, c.y, c.z};
                near[MakeBrick(first)].words[c.z & 7] |= row * Bit(first);
                x = stop;
            }
        }

        [[nodiscard]] bool Contains(Cube c) const
        {
            const auto inside = [this](int i) {
                return i >= -bricksfromorigin * kBrickEdge && i < bricksfromorigin * kBrickEdge;
            };
            return inside(c.x) && inside(c.y) && inside(c.z);
        }

        // The place of the brick that a cube lies in.
        uint32_t MakeBrick(Cube c)
        {
            uint32_t &number = index[Place(c)];
            if (number == 0) {
                for (std::vector<Brick> *bricks : {&near, &occupied}) {
                    if (bricks->size() == bricks->capacity())
                        bricks->reserve(bricks->size() / 8 * 9 + 8);
                    bricks->push_back(Brick{});
                }
                number = static_cast<uint32_t>(near.size() - 1);
            }
            return number;
        }

        [[nodiscard]] std::size_t Place(Cube c) const
        {
            const auto n = 2 * static_cast<std::size_t>(bricksfromorigin);
            const auto along = [this](int i) {
                return static_cast<std::size_t>((i >> 3) + bricksfromorigin);
            };
            return (along(c.z) * n + along(c.y)) * n + along(c.x);
        }

        static uint64_t Bit(Cube c) { return uint64_t{1} << ((c.y & 7) * 8 + (c.x & 7)); }

        // The cubes within the reach of one, row by row: so many to either side.
        struct Row {
            int dy, dz, half;
        };

        int shift;       // the edge is the smallest one times two to this
        double distance; // what a cube without a mark is sure to be clear of
        int bricksfromorigin;
        std::vector<Row> rows;
        std::vector<uint32_t> index; // by brick of space: its place in the following, or 0
        std::vector<Brick> near;     // a particle lies within the reach; the first has no bit
        std::vector<Brick> occupied; // a particle lies in the cube
    };

    [[nodiscard]] int BricksFromOrigin(int shift) const
    {
        return static_cast<int>(std::ldexp(extent * inverse, -shift) / kBrickEdge) + 1;
    }

    std::vector<Level> levels; // the nearest distance first
    double extent = 0;
    double inverse = 0; // of the smallest edge
    int last = 0;       // level of the last answer
};
