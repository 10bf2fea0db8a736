// Lists of particles by cube. Part of the neighbour search: docs/neighbour-search.md.

#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "base/chunked_vector.h"
#include "base/large_pages.h"
#include "search/cube_grid.h"

// A list stores roughly where in its cube each particle is, so that particles clearly beyond the reach need not be
// read. It consists of buckets of four particles, the newest bucket first.
class CubeLists
{
public:
    void Start(double reach, int expected)
    {
        inverse = 1 / (2 * kMargin * reach);
        count = 0;
        std::size_t size = kSmallest;
        while (size < 2 * static_cast<std::size_t>(expected))
            size *= 2;
        newestbuckets.assign(size, 0);
        buckets = ChunkedVector<Bucket>();
        buckets.push_back(Bucket());
    }

    [[nodiscard]] bool IsFull() const { return count >= newestbuckets.size(); }

    [[nodiscard]] bool Holds(Vector p) const { return HasCube(inverse * p); }

    // Lists particle i, which is at p.
    void Insert(int i, Vector p)
    {
        const Vector c = inverse * p;
        const int x = Floor(c.x), y = Floor(c.y), z = Floor(c.z);
        uint32_t &head = newestbuckets[Slot(x, y, z)];
        if (head == 0 || buckets[head].IsFull()) {
            buckets.push_back(Bucket(head));
            head = static_cast<uint32_t>(buckets.size() - 1);
        }
        const int place = Part(c.x - x) | Part(c.y - y) << kPlaceBits | Part(c.z - z) << 2 * kPlaceBits;
        buckets[head].Add(i, place);
        count++;
    }

    // Calls visit(i) for every particle i within the reach of p; may visit other particles, and a particle twice.
    template<typename Visit>
    void VisitNear(Vector p, Visit visit) const
    {
        // A cube's edge is twice the reach, so the ball about p meets at most two cubes along each axis.
        const Vector c = inverse * p;
        const int x = Floor(c.x - 0.5), y = Floor(c.y - 0.5), z = Floor(c.z - 0.5);
        struct Neighbour {
            uint32_t list;
            Vector within; // position of p relative to the cube's corner, in cubes
        };
        std::array<Neighbour, 8> neighbours;
        for (int k = 0; k < 8; k++) {
            const int nx = x + (k & 1), ny = y + (k >> 1 & 1), nz = z + (k >> 2);
            neighbours[k] = {newestbuckets[Slot(nx, ny, nz)], {c.x - nx, c.y - ny, c.z - nz}};
            __builtin_prefetch(&buckets[neighbours[k].list]);
        }
        for (const auto &[list, within] : neighbours)
            for (uint32_t at = list; at != 0; at = buckets[at].Next())
                buckets[at].VisitNear(within, visit);
    }

    // Calls visit(i) for every particle i within a radius of p, and possibly for others, until visit returns false.
    // Returns false, without any visit, if it would have to read more lists than there are particles.
    template<typename Visit>
    bool VisitAround(Vector p, double radius, Visit visit) const
    {
        const double span = radius * inverse * kMargin;
        const int n = static_cast<int>(2 * span) + 2;
        if (static_cast<double>(n) * n * n > static_cast<double>(count))
            return false;
        const Vector c = inverse * p;
        const int x0 = Floor(c.x - span), y0 = Floor(c.y - span), z0 = Floor(c.z - span);
        for (int z = z0; z < z0 + n; z++)
            for (int y = y0; y < y0 + n; y++)
                for (int x = x0; x < x0 + n; x++)
                    for (uint32_t at = newestbuckets[Slot(x, y, z)]; at != 0; at = buckets[at].Next())
                        if (!buckets[at].VisitAll(visit))
                            return true;
        return true;
    }

private:
    static constexpr std::size_t kSmallest = 1024;
    // Bits of each coordinate of a place in a cube.
    static constexpr int kPlaceBits = 10;
    static constexpr int kPlaces = 1 << kPlaceBits;
    // Values instead of a place. Read as places, both are beyond the reach of every point that searches the cube.
    static constexpr int kUnusedEntry = 0x7ffffffe; // unused entry
    static constexpr int kLinkEntry = 0x7fffffff; // the entry's number is the index of the list's next bucket

    class alignas(32) Bucket
    {
    public:
        Bucket() = default;

        // A bucket in front of the bucket `next`, 0 for none.
        explicit Bucket(uint32_t next)
        {
            if (next == 0)
                return;
            places[kEntries - 1] = kLinkEntry;
            numbers[kEntries - 1] = next;
        }

        [[nodiscard]] bool IsFull() const { return FirstFree() == kEntries; }

        void Add(int i, int place)
        {
            const int entry = FirstFree();
            places[entry] = place;
            numbers[entry] = static_cast<uint32_t>(i);
        }

        [[nodiscard]] uint32_t Next() const
        {
            return places[kEntries - 1] == kLinkEntry ? numbers[kEntries - 1] : 0;
        }

        // Visits the particles that may be within the reach of a point, given in cubes from this cube's corner.
        template<typename Visit>
        void VisitNear(Vector point, Visit visit) const
        {
            // The reach in places, and two more because a coordinate is stored to half a place.
            constexpr auto kReach = static_cast<float>(kPlaces / (2 * kMargin) + 2);
            const auto distance = [](Integers place, double coordinate) {
                return __builtin_convertvector(place, Floats) -
                       static_cast<float>(kPlaces * coordinate - 0.5);
            };
            const Floats x = distance(places & (kPlaces - 1), point.x);
            const Floats y = distance(places >> kPlaceBits & (kPlaces - 1), point.y);
            const Floats z = distance(places >> 2 * kPlaceBits, point.z);
            const Integers isnear = x * x + y * y + z * z < kReach * kReach;
            const auto halves = reinterpret_cast<Halves>(isnear);
            if ((halves[0] | halves[1]) == 0)
                return;
            for (int k = 0; k < kEntries; k++)
                if (isnear[k] != 0)
                    visit(static_cast<int>(numbers[k]));
        }

        // Visits all particles until visit returns false; returns false then.
        template<typename Visit>
        bool VisitAll(Visit visit) const
        {
            for (int k = 0; k < kEntries; k++)
                if (places[k] < kUnusedEntry && !visit(static_cast<int>(numbers[k])))
                    return false;
            return true;
        }

    private:
        static constexpr int kEntries = 4;
        using Integers = int32_t __attribute__((vector_size(16)));
        using Floats = float __attribute__((vector_size(16)));
        using Halves = int64_t __attribute__((vector_size(16)));

        [[nodiscard]] int FirstFree() const
        {
            int entry = 0;
            while (entry < kEntries && places[entry] != kUnusedEntry)
                entry++;
            return entry;
        }

        Integers places = {kUnusedEntry, kUnusedEntry, kUnusedEntry, kUnusedEntry};
        std::array<uint32_t, kEntries> numbers = {}; // indices of the particles
    };

    static int Part(double within) { return std::min(static_cast<int>(kPlaces * within), kPlaces - 1); }

    // The slot (hash) of a cube, combined from a part for each coordinate. The 4 x 4 x 4 cubes of a block lie
    // together in memory; blocks with the same slots share their lists.
    [[nodiscard]] std::size_t Slot(int x, int y, int z) const
    {
        return (Mix(x, 73856093U, 0) ^ Mix(y, 19349663U, 2) ^ Mix(z, 83492791U, 4)) &
               (newestbuckets.size() - 1);
    }

    static std::size_t Mix(int coordinate, std::size_t factor, int shift)
    {
        const auto block = static_cast<std::size_t>(coordinate >> 2);
        const auto within = static_cast<std::size_t>(coordinate & 3);
        return block * factor << 6 | within << shift;
    }

    double inverse = 0;                  // cubes per unit of length
    std::size_t count = 0;               // of particles
    LargeVector<uint32_t> newestbuckets; // by slot: the newest bucket of its list, or 0
    ChunkedVector<Bucket> buckets;       // the first stays empty: index 0 ends a list
};
