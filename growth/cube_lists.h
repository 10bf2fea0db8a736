// Lists of particles by cube of space, newest first. Part of the neighbour search: docs/neighbour-search.md.

#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "growth/cube_grid.h"

class CubeLists
{
public:
    // The eight lists that hold every particle within the reach of a point, and perhaps others. A list may
    // occur twice.
    using Lists = std::array<int, 8>;

    void Start(double reach, int count)
    {
        inverse = 1 / (2 * kMargin * reach);
        std::size_t size = kSmallest;
        while (size < 2 * static_cast<std::size_t>(count))
            size *= 2;
        heads.assign(size, -1);
        next.clear();
        next.reserve(static_cast<std::size_t>(count));
    }

    [[nodiscard]] bool IsFull() const { return next.size() >= heads.size(); }

    [[nodiscard]] bool Holds(Vector p) const { return HasCube(inverse * p); }

    // Appends the next particle; one that is in no list has no cube.
    void Append(Vector p, bool listed)
    {
        const int i = static_cast<int>(next.size());
        next.push_back(-1);
        if (!listed)
            return;
        int &head = heads[Slot(Cube(p.x, 0), Cube(p.y, 0), Cube(p.z, 0))];
        next.back() = head;
        head = i;
    }

    // The cubes of edge 2 reaches that the ball about p can meet: two along each axis.
    [[nodiscard]] Lists Around(Vector p) const
    {
        const int x = Cube(p.x, 0.5);
        const int y = Cube(p.y, 0.5);
        const int z = Cube(p.z, 0.5);
        Lists lists;
        for (int k = 0; k < 8; k++)
            lists[k] = heads[Slot(x + k % 2, y + k / 2 % 2, z + k / 4)];
        return lists;
    }

    // Calls visit(q) for the particles q newer than i within a radius of p, and perhaps others, until it
    // returns false. Returns false, without a visit, where that would mean more lists than there are
    // particles.
    template<typename Visit>
    bool VisitNewer(Vector p, double radius, int i, Visit visit) const
    {
        const double span = radius * inverse * kMargin;
        const int n = static_cast<int>(2 * span) + 2;
        if (std::pow(n, 3) > static_cast<double>(next.size()))
            return false;
        const int x0 = Cube(p.x, span);
        const int y0 = Cube(p.y, span);
        const int z0 = Cube(p.z, span);
        for (int z = z0; z < z0 + n; z++)
            for (int y = y0; y < y0 + n; y++)
                for (int x = x0; x < x0 + n; x++)
                    for (int q = heads[Slot(x, y, z)]; q > i; q = Next(q))
                        if (!visit(q))
                            return true;
        return true;
    }

    [[nodiscard]] int Next(int i) const { return next[i]; }

private:
    static constexpr std::size_t kSmallest = 1024;

    [[nodiscard]] int Cube(double coordinate, double shift) const
    {
        return Floor(coordinate * inverse - shift);
    }

    // Blocks of 4 x 4 x 4 cubes lie together in memory; blocks that share a slot share their lists. A slot is
    // made of a part for each coordinate.
    [[nodiscard]] std::size_t Slot(int x, int y, int z) const
    {
        return (Part(x, 73856093U, 0) ^ Part(y, 19349663U, 2) ^ Part(z, 83492791U, 4)) & (heads.size() - 1);
    }

    static std::size_t Part(int coordinate, std::size_t factor, int shift)
    {
        const auto block = static_cast<std::size_t>(coordinate >> 2);
        const auto within = static_cast<std::size_t>(coordinate & 3);
        return block * factor << 6 | within << shift;
    }

    double inverse = 0;     // cubes per unit of length
    std::vector<int> heads; // by slot: the newest particle of the list, or -1
    std::vector<int> next;  // by particle: the next older one of its list, or -1
};
