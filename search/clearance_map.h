// How far the nearest particle is at least, by cube of space. Part of the neighbour search: docs/neighbour-search.md.

#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <utility>
#include <vector>

#include "base/chunked_vector.h"
#include "base/large_pages.h"
#include "search/cube_grid.h"

// Cubes of several scales that meet at the origin, each scale's edge twice the one below; and on each scale two levels,
// one for a near reach and one for a far one. A cube's bit is set on a level when a particle lies in it or in a cube that
// comes nearer to it than the level's reach; so a point in a cube whose bit is not set is at least that far away from
// every particle. The answers depend on the particles and the smallest edge alone, not on when the map was made.
class ClearanceMap
{
public:
    // What finds the blocks of a map that covers -extent to extent, in bytes.
    static double IndexBytes(double edge, double extent)
    {
        constexpr double kIndices = 1.15; // of the finest edge; and the others together
        const double along = 2 * extent / (kBrickEdge * edge) + 2;
        return kIndices * sizeof(uint32_t) * along * along * along / kBricks;
    }

    // A map of the cube from -extent to extent whose smallest cubes have the given edge.
    void Start(double smallestedge, double wantedextent)
    {
        edge = smallestedge;
        inverse = 1 / edge;
        scales.clear();
        blocks = BlockPool();
        last = 0;
        iscomplete = true;
        Extend(wantedextent);
    }

    // Extends the map. Returns false where that cannot be, since a particle was marked that lay beyond its borders.
    bool Extend(double wantedextent)
    {
        if (!iscomplete)
            return false;
        extent = wantedextent;
        for (Scale &scale : scales)
            scale.Cover(CubesFromOrigin(scale.shift));
        // The coarsest scale is the first of which eight cubes reach the borders.
        for (int shift = static_cast<int>(scales.size());
             shift == 0 || CubesFromOrigin(shift - 1) >= kBrickEdge; shift++) {
            scales.push_back(Scale(edge, shift, CubesFromOrigin(shift)));
            if (shift > 0)
                scales.back().OccupyAs(scales[shift - 1], &blocks);
        }
        return true;
    }

    void Mark(Vector p)
    {
        iscomplete = iscomplete && Covers(p);
        const Vector c = inverse * p;
        if (!HasCube(c))
            return;
        const Cube cube = {Floor(c.x), Floor(c.y), Floor(c.z)};
        for (Scale &scale : scales)
            if (!scale.Occupy(cube >> scale.shift, &blocks))
                return; // and so are the cubes around it, and on the scales above
    }

    // A distance within which there is no particle of p, or 0 when none is known: that of the last level that is not
    // marked there. What is marked on one level is so on those above.
    double Clearance(Vector p)
    {
        if (!Covers(p))
            return 0;
        const Vector c = inverse * p;
        const Cube cube = {Floor(c.x), Floor(c.y), Floor(c.z)};
        const auto clearlevels = [&](int s) {
            return scales[s].ClearLevels(cube >> scales[s].shift, blocks);
        };
        // Walkers move little between two questions: the search starts at the last answer's scale.
        int s = last;
        int levels = clearlevels(s);
        if (levels == 0) {
            while (levels == 0 && s > 0)
                levels = clearlevels(--s);
        } else {
            const int top = static_cast<int>(scales.size()) - 1;
            for (int above = levels; above == kLevels && s < top && (above = clearlevels(s + 1)) > 0; s++)
                levels = above;
        }
        last = s;
        return levels == 0 ? 0 : scales[s].distances[levels - 1];
    }

private:
    static constexpr int kBrickEdge = 8;
    static constexpr int kBricks = 8; // of a block, two along each axis
    static constexpr int kBlockEdge = 2 * kBrickEdge;

    struct Cube {
        int x, y, z;
        Cube operator>>(int shift) const { return {x >> shift, y >> shift, z >> shift}; }
    };

    static uint64_t Bit(Cube c) { return uint64_t{1} << ((c.y & 7) * 8 + (c.x & 7)); }

    static constexpr int kLevels = 2; // of a scale

    // Bits of 8 x 8 x 8 cubes: a word for each z, a byte of it for each y.
    using Bits = std::array<uint64_t, kBrickEdge>;
    // Words of the levels, side by side.
    using Words = std::array<uint64_t, kLevels>;
    struct alignas(64) Brick {
        std::array<Words, kBrickEdge> marked;
    };
    // The bricks of a block lie together in memory.
    template<typename Part>
    using Block = std::array<Part, kBricks>;
    static int InBlock(Cube brick) { return (brick.z & 1) * 4 + (brick.y & 1) * 2 + (brick.x & 1); }

    // The blocks of all scales; the first has no bit.
    struct BlockPool {
        BlockPool() { Add(); }

        uint32_t Add()
        {
            marked.push_back({});
            occupied.push_back({});
            return static_cast<uint32_t>(marked.size() - 1);
        }

        ChunkedVector<Block<Brick>> marked;  // a particle lies within the reach
        ChunkedVector<Block<Bits>> occupied; // a particle lies in the cube
    };

    // The cubes that come nearer to one than the reaches of the levels.
    struct Stencil {
        static constexpr int kReach = 3; // cubes along each axis, at most
        static constexpr int kSlices = 2 * kReach + 1;
        static constexpr int kPlaces = kBrickEdge * kBrickEdge;
        // Those of one z, in the two by two bricks that they meet.
        using Slice = std::array<Words, 4>;

        explicit Stencil(std::array<int, kLevels> squaredreaches)
            : slices(static_cast<std::size_t>(kSlices) * kPlaces)
        {
            const auto gap2 = [](int d) { return d * d > 1 ? (std::abs(d) - 1) * (std::abs(d) - 1) : 0; };
            for (int place = 0; place < kPlaces; place++)
                for (int dz = 0; dz < kSlices; dz++)
                    for (int dy = 0; dy < kSlices; dy++)
                        for (int dx = 0; dx < kSlices; dx++)
                            for (int level = 0; level < kLevels; level++)
                                if (gap2(dx - kReach) + gap2(dy - kReach) + gap2(dz - kReach) <
                                    squaredreaches[level]) {
                                    const int x = place % 8 + dx, y = place / 8 + dy;
                                    slices[place * kSlices + dz][y / 8 * 2 + x / 8][level] |= Bit({x, y, 0});
                                }
        }

        // The slices of increasing z whose corner is there.
        [[nodiscard]] const Slice *SlicesAt(Cube corner) const
        {
            const std::size_t place = (corner.y & 7) * 8 + (corner.x & 7);
            return &slices[place * kSlices];
        }

        std::vector<Slice> slices; // by place in the brick
    };

    struct Scale {
        Scale(double smallestedge, int steps, double cubes) : shift(steps), stencil(SquaredReaches(steps))
        {
            for (int level = 0; level < kLevels; level++)
                distances[level] =
                    std::sqrt(SquaredReaches(steps)[level]) * std::ldexp(smallestedge, steps) / kMargin;
            Cover(cubes);
        }

        // Makes room for the cubes from the origin to so many from it, and for what is marked around them.
        void Cover(double cubes)
        {
            const int before = fromorigin;
            const LargeVector<uint32_t> indexbefore = std::move(index);
            fromorigin = static_cast<int>((cubes + Stencil::kReach + 1) / kBlockEdge) + 1;
            index.assign(8 * static_cast<std::size_t>(fromorigin) * fromorigin * fromorigin, 0);
            const auto row = 2 * static_cast<std::ptrdiff_t>(before);
            auto number = indexbefore.begin();
            for (int z = -before; z < before; z++)
                for (int y = -before; y < before; y++, number += row)
                    std::copy(number, number + row, index.begin() + Place({-before, y, z}));
        }

        // Marks what a finer scale, of half the edge, has marked.
        void OccupyAs(const Scale &finer, BlockPool *pool)
        {
            const int end = finer.fromorigin;
            for (int z = -end; z < end; z++)
                for (int y = -end; y < end; y++)
                    for (int x = -end; x < end; x++)
                        if (finer.index[finer.Place({x, y, z})] != 0)
                            OccupyAs(finer, {kBlockEdge * x, kBlockEdge * y, kBlockEdge * z}, pool);
        }

        // In the block with a corner.
        void OccupyAs(const Scale &finer, Cube corner, BlockPool *pool)
        {
            for (int z = corner.z; z < corner.z + kBlockEdge; z++)
                for (int y = corner.y; y < corner.y + kBlockEdge; y++)
                    for (int x = corner.x; x < corner.x + kBlockEdge; x++)
                        if (finer.IsOccupied({x, y, z}, *pool))
                            Occupy({x >> 1, y >> 1, z >> 1}, pool);
        }

        static std::array<int, kLevels> SquaredReaches(int steps) { return {steps == 0 ? 1 : 5, 9}; }

        // On how many levels the cube is not marked, the near one first.
        [[nodiscard]] int ClearLevels(Cube c, const BlockPool &pool) const
        {
            const Brick &brick = pool.marked[index[Place(c >> 4)]][InBlock(c >> 3)];
            const Words &words = brick.marked[c.z & 7];
            return ((words[0] & Bit(c)) == 0 ? 1 : 0) + ((words[1] & Bit(c)) == 0 ? 1 : 0);
        }

        [[nodiscard]] bool IsOccupied(Cube c, const BlockPool &pool) const
        {
            return (pool.occupied[index[Place(c >> 4)]][InBlock(c >> 3)][c.z & 7] & Bit(c)) != 0;
        }

        // A particle lies in the cube, which may be outside of the map. Returns false where that was known.
        bool Occupy(Cube c, BlockPool *pool)
        {
            if (Contains(c >> 4)) {
                uint64_t &word = pool->occupied[BlockAt(c >> 4, pool)][InBlock(c >> 3)][c.z & 7];
                if ((word & Bit(c)) != 0)
                    return false;
                word |= Bit(c);
            }
            const Cube corner = {c.x - Stencil::kReach, c.y - Stencil::kReach, c.z - Stencil::kReach};
            for (int k = 0; k < 4; k++)
                MarkColumn(k, corner, pool);
            return true;
        }

        // In one of the two by two columns of bricks that the cubes from a corner on meet.
        void MarkColumn(int column, Cube corner, BlockPool *pool)
        {
            const Stencil::Slice *slice = stencil.SlicesAt(corner);
            Brick *brick = nullptr;
            for (int z = corner.z; z < corner.z + Stencil::kSlices; z++, slice++) {
                const Words &words = (*slice)[column];
                if (words[kLevels - 1] == 0)
                    continue;
                if (brick == nullptr || (z & 7) == 0) {
                    const Cube at = {(corner.x >> 3) + column % 2, (corner.y >> 3) + column / 2, z >> 3};
                    brick = Contains(at >> 1) ? &pool->marked[BlockAt(at >> 1, pool)][InBlock(at)] : nullptr;
                }
                for (int level = 0; brick != nullptr && level < kLevels; level++)
                    brick->marked[z & 7][level] |= words[level];
            }
        }

        [[nodiscard]] bool Contains(Cube block) const
        {
            const auto inside = [this](int i) { return i >= -fromorigin && i < fromorigin; };
            return inside(block.x) && inside(block.y) && inside(block.z);
        }

        // The place of a block, which is added where there is none.
        uint32_t BlockAt(Cube block, BlockPool *pool)
        {
            uint32_t &number = index[Place(block)];
            if (number == 0)
                number = pool->Add();
            return number;
        }

        [[nodiscard]] std::size_t Place(Cube block) const
        {
            const auto n = 2 * static_cast<std::size_t>(fromorigin);
            const auto along = [this](int i) -> std::size_t { return i + fromorigin; };
            return (along(block.z) * n + along(block.y)) * n + along(block.x);
        }

        int shift;                             // the edge is the smallest one times two to this
        std::array<double, kLevels> distances; // what a cube without a mark is sure to be clear of
        Stencil stencil;
        int fromorigin = 0;          // blocks that the scale goes from the origin
        LargeVector<uint32_t> index; // by block of space: its place among the blocks, or 0
    };

    [[nodiscard]] bool Covers(Vector p) const
    {
        return std::fabs(p.x) < extent && std::fabs(p.y) < extent && std::fabs(p.z) < extent;
    }

    // Of a scale, to the borders.
    [[nodiscard]] double CubesFromOrigin(int shift) const { return std::ldexp(extent * inverse, -shift); }

    std::vector<Scale> scales; // the smallest edge first
    BlockPool blocks;
    double extent = 0;
    double edge = 0; // of the smallest cubes
    double inverse = 0;
    int last = 0;           // scale of the last answer
    bool iscomplete = true; // no particle was marked that lies beyond the borders
};
