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

    static uint64_t Bit(Cube c) { return uint64_t{1} << ((c.y & 7) * 8 + (c.x & 7)); }

    // Bits of 8 x 8 x 8 cubes: a word for each z, a byte of it for each y.
    struct alignas(64) Brick {
        std::array<uint64_t, kBrickEdge> words;
    };

    // The cubes that come nearer to one than the reach.
    struct Stencil {
        // Those of one z, in the two by two bricks that they meet.
        using Slice = std::array<uint64_t, 4>;

        explicit Stencil(int squaredreach) : reach(1 + static_cast<int>(std::sqrt(squaredreach - 1)))
        {
            const auto gap2 = [](int d) { return d * d > 1 ? (std::abs(d) - 1) * (std::abs(d) - 1) : 0; };
            slices.resize(static_cast<std::size_t>(reach + 1) * kPlaces);
            for (int dz = 0; dz <= reach; dz++)
                for (int place = 0; place < kPlaces; place++)
                    for (int dy = -reach; dy <= reach; dy++)
                        for (int dx = -reach; dx <= reach; dx++)
                            if (gap2(dx) + gap2(dy) + gap2(dz) < squaredreach) {
                                const int x = place % 8 + reach + dx, y = place / 8 + reach + dy;
                                slices[dz * kPlaces + place][y / 8 * 2 + x / 8] |= Bit({x, y, 0});
                            }
        }

        // The slice so many cubes above the lowest, which has its corner there.
        [[nodiscard]] const Slice &SliceAt(int dz, Cube corner) const
        {
            return slices[std::abs(dz - reach) * kPlaces + ((corner.y & 7) * 8 + (corner.x & 7))];
        }

        static constexpr int kPlaces = kBrickEdge * kBrickEdge; // of the corner in its brick
        int reach;
        std::vector<Slice> slices; // by distance along z, and place
    };

    struct Level {
        Level(double smallestedge, int steps, int squaredreach, int half)
            : shift(steps), distance(std::sqrt(squaredreach) * std::ldexp(smallestedge, steps) / kMargin),
              bricksfromorigin(half), stencil(squaredreach),
              index(8 * static_cast<std::size_t>(half) * half * half), near(1), occupied(1)
        {
        }

        [[nodiscard]] bool IsMarked(Cube c) const
        {
            return (near[index[Place(c >> 3)]].words[c.z & 7] & Bit(c)) != 0;
        }

        // A particle lies in the cube, which may be outside of the map. Returns false where that was known.
        bool Occupy(Cube c)
        {
            const Cube own = c >> 3;
            if (Contains(own)) {
                uint64_t &word = occupied[MakeBrick(own)].words[c.z & 7];
                if ((word & Bit(c)) != 0)
                    return false;
                word |= Bit(c);
            }
            const Cube corner = {c.x - stencil.reach, c.y - stencil.reach, c.z - stencil.reach};
            for (int dz = 0; dz <= 2 * stencil.reach; dz++) {
                const Stencil::Slice &slice = stencil.SliceAt(dz, corner);
                for (int k = 0; k < 4; k++) {
                    const Cube brick = {(corner.x >> 3) + k % 2, (corner.y >> 3) + k / 2,
                                        (corner.z + dz) >> 3};
                    if (slice[k] != 0 && Contains(brick))
                        near[MakeBrick(brick)].words[(corner.z + dz) & 7] |= slice[k];
                }
            }
            return true;
        }

        [[nodiscard]] bool Contains(Cube brick) const
        {
            const auto inside = [this](int i) { return i >= -bricksfromorigin && i < bricksfromorigin; };
            return inside(brick.x) && inside(brick.y) && inside(brick.z);
        }

        // The place of a brick, which is made where there is none.
        uint32_t MakeBrick(Cube brick)
        {
            uint32_t &number = index[Place(brick)];
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

        [[nodiscard]] std::size_t Place(Cube brick) const
        {
            const auto n = 2 * static_cast<std::size_t>(bricksfromorigin);
            const auto along = [this](int i) -> std::size_t { return i + bricksfromorigin; };
            return (along(brick.z) * n + along(brick.y)) * n + along(brick.x);
        }

        int shift;       // the edge is the smallest one times two to this
        double distance; // what a cube without a mark is sure to be clear of
        int bricksfromorigin;
        Stencil stencil;
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
