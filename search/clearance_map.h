// A lower bound on the distance to the nearest particle, by cube. See docs/neighbour-search.md.

#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <utility>
#include <vector>

#include "base/shared.h"
#include "search/cube_grid.h"

// A bit of the map that was not set when a walker looked. Bits are only ever set.
struct UnsetBit {
    const uint64_t *word;
    uint64_t bit; // all bits of the word if it is the place of a block that did not exist

    [[nodiscard]] bool IsSet() const { return (LoadShared(word) & bit) != 0; }
};

// Space is cut into cubes at several scales, with a corner at the origin; each scale's edge is twice that of the next
// finer one. Each scale has two levels, one with a near reach and one with a far reach. A cube's bit is set on a
// level when a particle lies in it or in a cube that comes nearer to it than the level's reach; so every particle is
// at least the reach away from a point in a cube whose bit is not set. The bounds depend only on the particles, the
// extent and the smallest edge, not on when the map was made. While one thread marks particles, others may look up
// clearances.
class ClearanceMap
{
public:
    // Bytes of the tables that find the blocks, in a map that covers -extent to extent.
    static double IndexBytes(double edge, double extent)
    {
        constexpr double kIndices = 1.15; // all scales' tables together, in tables of the finest
        const double along = 2 * extent / (kBrickEdge * edge) + 2;
        return kIndices * sizeof(uint64_t) * along * along * along / kBricks;
    }

    // Starts an empty map of the cube from -extent to extent whose smallest cubes have the given edge.
    void Start(double smallestedge, double wantedextent)
    {
        edge = smallestedge;
        inverse = 1 / edge;
        scales.clear();
        blocks = BlockPool();
        iscomplete = true;
        Extend(wantedextent);
    }

    // Extends the map; nobody may look up clearances meanwhile. Returns false if that is impossible because a particle was marked beyond its borders.
    bool Extend(double wantedextent)
    {
        if (!iscomplete)
            return false;
        extent = wantedextent;
        for (Scale &scale : scales)
            scale.Cover(CubesFromOrigin(scale.shift));
        // The coarsest scale is the first with fewer than kBrickEdge cubes from the origin to the border.
        for (int shift = static_cast<int>(scales.size());
             shift == 0 || CubesFromOrigin(shift - 1) >= kBrickEdge; shift++) {
            scales.push_back(Scale(edge, shift, CubesFromOrigin(shift)));
            if (shift > 0)
                scales.back().OccupyFromFiner(scales[shift - 1], &blocks);
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
                return; // occupied before: all coarser scales are marked, too
    }

    // Lower bound on the distance from p to any particle, 0 if unknown: the reach of the coarsest unmarked level. A
    // place marked on one level is marked on all coarser ones. The look-up starts at *scale, the scale of the last
    // result, because walkers move little in between. If the result is not 0, *reason is the bit that it rests on.
    double Clearance(Vector p, int *scale, UnsetBit *reason) const
    {
        if (!Covers(p))
            return 0;
        const Vector c = inverse * p;
        const Cube cube = {Floor(c.x), Floor(c.y), Floor(c.z)};
        const auto clearlevels = [&](int s, UnsetBit *unset) {
            return scales[s].ClearLevels(cube >> scales[s].shift, unset);
        };
        int s = *scale;
        int levels = clearlevels(s, reason);
        if (levels == 0) {
            while (levels == 0 && s > 0)
                levels = clearlevels(--s, reason);
        } else {
            const int top = static_cast<int>(scales.size()) - 1;
            UnsetBit unset;
            for (int above = levels; above == kLevels && s < top && (above = clearlevels(s + 1, &unset)) > 0;
                 s++) {
                levels = above;
                *reason = unset;
            }
        }
        *scale = s;
        return levels == 0 ? 0 : scales[s].distances[levels - 1];
    }

private:
    static constexpr int kBrickEdge = 8;
    static constexpr int kBricks = 8; // in a block, two along each axis
    static constexpr int kBlockEdge = 2 * kBrickEdge;

    struct Cube {
        int x, y, z;
        Cube operator>>(int shift) const { return {x >> shift, y >> shift, z >> shift}; }
    };

    static uint64_t Bit(Cube c) { return uint64_t{1} << ((c.y & 7) * 8 + (c.x & 7)); }

    static constexpr int kLevels = 2; // of a scale

    // One bit for each of 8 x 8 x 8 cubes: a word for each z, in it a byte for each y.
    using Bits = std::array<uint64_t, kBrickEdge>;
    // The words of a scale's levels.
    using Words = std::array<uint64_t, kLevels>;
    struct alignas(64) Brick {
        std::array<Words, kBrickEdge> marked;
    };
    // The bricks of a block lie together in memory.
    struct Block {
        std::array<Brick, kBricks> marked;  // a particle lies within the level's reach
        std::array<Bits, kBricks> occupied; // a particle lies in the cube
    };
    static int InBlock(Cube brick) { return (brick.z & 1) * 4 + (brick.y & 1) * 2 + (brick.x & 1); }

    // The blocks of all scales. They never move.
    class BlockPool
    {
    public:
        Block *Add()
        {
            if (count == chunks.size() * kChunk)
                chunks.push_back(std::make_unique<Block[]>(kChunk));
            Block *const block = &chunks.back()[count % kChunk];
            count++;
            return block;
        }

    private:
        static constexpr std::size_t kChunk = 64;
        std::vector<std::unique_ptr<Block[]>> chunks; // all full except the last
        std::size_t count = 0;
    };

    // Masks of the cubes that an occupied cube marks: those that come nearer to it than each level's reach.
    struct Stencil {
        static constexpr int kReach = 3; // largest reach, in cubes
        static constexpr int kSlices = 2 * kReach + 1;
        static constexpr int kPlaces = kBrickEdge * kBrickEdge;
        // The mask for one z, in the two by two bricks that it overlaps.
        using Slice = std::array<Words, 4>;

        explicit Stencil(std::array<int, kLevels> squaredreaches)
            : slices(static_cast<std::size_t>(kSlices) * kPlaces)
        {
            for (int z = -kReach; z <= kReach; z++)
                for (int y = -kReach; y <= kReach; y++)
                    for (int x = -kReach; x <= kReach; x++)
                        for (int level = 0; level < kLevels; level++)
                            if (SquaredGap(x) + SquaredGap(y) + SquaredGap(z) < squaredreaches[level])
                                Mark({x + kReach, y + kReach, z + kReach}, level);
        }

        // The square of the distance between two cubes whose places differ by d, in edges
        static int SquaredGap(int d) { return d == 0 ? 0 : (std::abs(d) - 1) * (std::abs(d) - 1); }

        // Adds the cube at an offset from the stencil's lowest one, for all places of that one in its brick.
        void Mark(Cube offset, int level)
        {
            for (int place = 0; place < kPlaces; place++) {
                const int x = place % kBrickEdge + offset.x, y = place / kBrickEdge + offset.y;
                const int column = y / kBrickEdge * 2 + x / kBrickEdge;
                slices[place * kSlices + offset.z][column][level] |= Bit({x, y, 0});
            }
        }

        // The slices in increasing z for a stencil whose lowest cube is `corner`.
        [[nodiscard]] const Slice *SlicesAt(Cube corner) const
        {
            const std::size_t place = (corner.y & 7) * 8 + (corner.x & 7);
            return &slices[place * kSlices];
        }

        std::vector<Slice> slices; // by place of the corner in its brick, then by z
    };

    struct Scale {
        Scale(double smallestedge, int steps, double cubes) : shift(steps), stencil(SquaredReaches(steps))
        {
            for (int level = 0; level < kLevels; level++)
                distances[level] =
                    std::sqrt(SquaredReaches(steps)[level]) * std::ldexp(smallestedge, steps) / kMargin;
            Cover(cubes);
        }

        // Makes room for so many cubes from the origin along each axis and for the marks around them.
        void Cover(double cubes)
        {
            const int before = fromorigin;
            const std::vector<uint64_t> indexbefore = std::move(index);
            fromorigin = static_cast<int>((cubes + Stencil::kReach + 1) / kBlockEdge) + 1;
            index.assign(8 * static_cast<std::size_t>(fromorigin) * fromorigin * fromorigin, 0);
            const auto row = 2 * static_cast<std::ptrdiff_t>(before);
            auto number = indexbefore.begin();
            for (int z = -before; z < before; z++)
                for (int y = -before; y < before; y++, number += row)
                    std::copy(number, number + row, index.begin() + IndexOf({-before, y, z}));
        }

        // Occupies the cubes that contain occupied cubes of a finer scale with half the edge.
        void OccupyFromFiner(const Scale &finer, BlockPool *pool)
        {
            const int end = finer.fromorigin;
            for (int z = -end; z < end; z++)
                for (int y = -end; y < end; y++)
                    for (int x = -end; x < end; x++)
                        if (finer.FindBlock({x, y, z}) != nullptr)
                            OccupyFromFiner(finer, {kBlockEdge * x, kBlockEdge * y, kBlockEdge * z}, pool);
        }

        // The same for the finer cubes of one block, whose lowest cube is `corner`.
        void OccupyFromFiner(const Scale &finer, Cube corner, BlockPool *pool)
        {
            for (int z = corner.z; z < corner.z + kBlockEdge; z++)
                for (int y = corner.y; y < corner.y + kBlockEdge; y++)
                    for (int x = corner.x; x < corner.x + kBlockEdge; x++)
                        if (finer.IsOccupied({x, y, z}))
                            Occupy({x >> 1, y >> 1, z >> 1}, pool);
        }

        static std::array<int, kLevels> SquaredReaches(int steps) { return {steps == 0 ? 1 : 5, 9}; }

        // Number of levels on which the cube is not marked. A cube marked on the near level is marked on the far one.
        // *unset becomes the bit of the farther of those levels.
        [[nodiscard]] int ClearLevels(Cube c, UnsetBit *unset) const
        {
            const uint64_t &place = index[IndexOf(c >> 4)];
            const auto *const block = reinterpret_cast<const Block *>(LoadShared(&place));
            if (block == nullptr) {
                *unset = {&place, ~uint64_t{0}};
                return kLevels;
            }
            const Words &words = block->marked[InBlock(c >> 3)].marked[c.z & 7];
            const uint64_t bit = Bit(c);
            for (int level = kLevels - 1; level >= 0; level--) {
                *unset = {&words[level], bit};
                if (!unset->IsSet())
                    return level + 1;
            }
            return 0;
        }

        [[nodiscard]] bool IsOccupied(Cube c) const
        {
            const Block *const block = FindBlock(c >> 4);
            return block != nullptr && (block->occupied[InBlock(c >> 3)][c.z & 7] & Bit(c)) != 0;
        }

        // Records a particle in the cube, which may be outside of the map. Returns false if it had one before.
        bool Occupy(Cube c, BlockPool *pool)
        {
            if (Contains(c >> 4)) {
                uint64_t &word = BlockAt(c >> 4, pool)->occupied[InBlock(c >> 3)][c.z & 7];
                if ((word & Bit(c)) != 0)
                    return false;
                word |= Bit(c);
            }
            const Cube corner = {c.x - Stencil::kReach, c.y - Stencil::kReach, c.z - Stencil::kReach};
            for (int k = 0; k < 4; k++)
                MarkColumn(k, corner, pool);
            return true;
        }

        // Marks the stencil's cubes in one of the two by two columns of bricks that it overlaps.
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
                    brick = Contains(at >> 1) ? &BlockAt(at >> 1, pool)->marked[InBlock(at)] : nullptr;
                }
                for (int level = 0; brick != nullptr && level < kLevels; level++)
                    SetBits(&brick->marked[z & 7][level], words[level]);
            }
        }

        [[nodiscard]] bool Contains(Cube block) const
        {
            const auto inside = [this](int i) { return i >= -fromorigin && i < fromorigin; };
            return inside(block.x) && inside(block.y) && inside(block.z);
        }

        static void SetBits(uint64_t *word, uint64_t bits)
        {
            if ((*word & bits) != bits)
                StoreShared(word, *word | bits);
        }

        // The block at a place, nullptr if there is none.
        [[nodiscard]] Block *FindBlock(Cube block) const
        {
            return reinterpret_cast<Block *>(index[IndexOf(block)]);
        }

        // The block at a place, which is added if there is none.
        Block *BlockAt(Cube block, BlockPool *pool)
        {
            uint64_t &place = index[IndexOf(block)];
            if (place == 0)
                StoreShared(&place, reinterpret_cast<uint64_t>(pool->Add()));
            return reinterpret_cast<Block *>(place);
        }

        [[nodiscard]] std::size_t IndexOf(Cube block) const
        {
            const auto n = 2 * static_cast<std::size_t>(fromorigin);
            const auto along = [this](int i) -> std::size_t { return i + fromorigin; };
            return (along(block.z) * n + along(block.y)) * n + along(block.x);
        }

        int shift;                             // the edge is the smallest edge times 2 to this power
        std::array<double, kLevels> distances; // distance to any particle that an unmarked cube guarantees
        Stencil stencil;
        int fromorigin = 0;          // number of blocks from the origin to the border
        std::vector<uint64_t> index; // by place of a block in space: its address, or 0
    };

    [[nodiscard]] bool Covers(Vector p) const
    {
        return std::fabs(p.x) < extent && std::fabs(p.y) < extent && std::fabs(p.z) < extent;
    }

    // Number of cubes of a scale from the origin to the border.
    [[nodiscard]] double CubesFromOrigin(int shift) const { return std::ldexp(extent * inverse, -shift); }

    std::vector<Scale> scales; // smallest edge first
    BlockPool blocks;
    double extent = 0;
    double edge = 0; // of the smallest cubes
    double inverse = 0;
    bool iscomplete = true; // no particle was marked beyond the borders
};
