// The boxes of a grid, and which of them a branch passes through. docs/box-count.md explains it.

#pragma once

#include <vector>

#include "geom/vector.h"

// Corners along one axis: box i lies from corners[i] to corners[i + 1].
using Corners = std::vector<double>;

class BoxGrid
{
public:
    BoxGrid(const Corners &xcorners, const Corners &ycorners, const Corners &zcorners);

    // Finds the boxes that branches of cells pass through: those for which LineInBox holds for a particle's position
    // and its parent's.
    void Fill();

    bool IsOccupied(std::size_t index) const { return occupied[index] != 0; }

    // Number of boxes. Box `index` counts z fastest, then y, then x.
    std::size_t Size() const { return occupied.size(); }
    Vector Lower(std::size_t index) const;
    Vector Upper(std::size_t index) const;

private:
    // Boxes along one axis that contain a coordinate: two if it is the corner between them, none if it is outside.
    struct Range {
        int first, last;
    };
    struct Axis {
        explicit Axis(Corners list);

        Corners corners;
        double perunit; // approximate number of boxes per unit of length
        Range FindAll(double coordinate) const;
        // Whether two coordinates are both beyond the same end.
        bool AreBothBeyond(double a, double b) const;
    };

    void FillBranch(Vector p, Vector parent);
    void FillAround(Vector sample, Vector p, Vector parent);
    void FillBox(std::size_t index, Vector p, Vector parent);
    std::size_t Index(int i, int j, int k) const;

    Axis x, y, z;
    std::vector<unsigned char> occupied;
};
