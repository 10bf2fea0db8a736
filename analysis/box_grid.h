// The boxes of a grid, and which of them a branch passes through. docs/box-count.md explains it.

#pragma once

#include <vector>

#include "geom/vector.h"

// Corners along one axis: box i lies from corners[i] to corners[i + 1].
using Corners = std::vector<double>;

// The aggregate as the grids look at it first: positions rounded to float, coordinate by coordinate.
struct Branches {
    double unit = 1; // of x, y and z
    std::vector<float> x, y, z;
    std::vector<int> parent; // -1 for a root
    Vector lowest, highest;  // bounds, exact

    // Takes all particles from cells. The unit is of the order of the aggregate's size.
    void Take(double lengthunit);
};

class BoxGrid
{
public:
    BoxGrid(const Corners &xcorners, const Corners &ycorners, const Corners &zcorners);

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
        double perunit; // boxes, about
        Range FindAll(double coordinate) const;
        // Whether two coordinates lie beyond the same end.
        bool Misses(double a, double b) const;
    };

    // The box that holds a point as one number, i + (j << 8) + (k << 16); negative where it is not plain.
    using Place = int;

    void FindPlaces(const Branches &branches, std::vector<Place> &places) const;
    void FillBranch(Vector p, Vector parent);
    void FillAround(Vector sample, Vector p, Vector parent);
    void FillBox(std::size_t index, Vector p, Vector parent);
    std::size_t Index(int i, int j, int k) const;

    Axis x, y, z;
    std::vector<unsigned char> occupied;
};
