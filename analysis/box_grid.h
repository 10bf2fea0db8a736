// The boxes of a grid, and which of them a branch passes through. docs/box-count.md explains it.

#pragma once

#include <vector>

#include "geom/vector.h"

// Corners along one axis: box i lies from corners[i] to corners[i + 1].
using Corners = std::vector<double>;

// The aggregate as the grids look at it: positions by coordinate, one after the other.
struct Branches {
    std::vector<double> x, y, z;
    std::vector<int> parent; // -1 for a root
    Vector lowest, highest;  // bounds

    // Takes all particles from cells.
    void Take();
    Vector Position(int i) const
    {
        const auto at = static_cast<std::size_t>(i);
        return {x[at], y[at], z[at]};
    }
};

class BoxGrid
{
public:
    BoxGrid(Corners x, Corners y, Corners z);

    // Finds the boxes that branches pass through: those for which LineInBox holds for a particle's position
    // and its parent's.
    void Fill(const Branches &branches);

    bool IsOccupied(std::size_t index) const { return occupied[index] != 0; }

    // Number of boxes. Box `index` counts z fastest, then y, then x.
    std::size_t Size() const { return occupied.size(); }
    Vector Lower(std::size_t index) const;
    Vector Upper(std::size_t index) const;

private:
    // Boxes along one axis that hold a coordinate: two where it is the corner between them, none outside.
    struct Range {
        int first, last;
    };
    struct Axis {
        explicit Axis(Corners list);

        Corners corners;
        double mostboxes; // their number
        double perbox;    // boxes per unit
        Range FindAll(double coordinate) const;
        // The one box that holds a coordinate, or -1 where that is not plain: near a corner, or outside.
        int FindPlain(double coordinate) const;
        // Whether two coordinates lie beyond the same end.
        bool Misses(double a, double b) const;
    };

    // The box that holds a point as one number, i + (j << 8) + (k << 16), or kNowhere where it is not plain.
    using Place = int;

    Place Find(Vector p) const;
    std::size_t IndexOf(Place a) const;
    void FillBranch(Vector p, Vector parent, Place a, Place b);
    void FillAround(Vector sample, Vector p, Vector parent);
    void FillBox(std::size_t index, Vector p, Vector parent);
    std::size_t Index(int i, int j, int k) const;

    Axis x, y, z;
    std::vector<unsigned char> occupied;
};
