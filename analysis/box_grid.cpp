#include "analysis/box_grid.h"

#include <algorithm>
#include <utility>

#include "growth/state.h"

// LineInBox tests the ends of a branch and the points between them at k / kSampleParts of its length.
constexpr int kSampleParts = 10;

BoxGrid::BoxGrid(const Corners &xcorners, const Corners &ycorners, const Corners &zcorners)
    : x(xcorners), y(ycorners), z(zcorners)
{
    occupied.resize((xcorners.size() - 1) * (ycorners.size() - 1) * (zcorners.size() - 1));
}

void BoxGrid::Fill()
{
    std::fill(occupied.begin(), occupied.end(), static_cast<unsigned char>(0));
    for (int i = 0; i < ncells && !occupied.empty(); i++)
        if (cells[i].parent >= 0)
            FillBranch(cells[i].p, cells[cells[i].parent].p);
}

Vector BoxGrid::Lower(std::size_t index) const
{
    const std::size_t nz = z.corners.size() - 1;
    const std::size_t ny = y.corners.size() - 1;
    return {x.corners[index / nz / ny], y.corners[index / nz % ny], z.corners[index % nz]};
}

Vector BoxGrid::Upper(std::size_t index) const
{
    const std::size_t nz = z.corners.size() - 1;
    const std::size_t ny = y.corners.size() - 1;
    return {x.corners[index / nz / ny + 1], y.corners[index / nz % ny + 1], z.corners[index % nz + 1]};
}

// Tests only the boxes that contain one of the points that LineInBox tests: it holds for no other box.
void BoxGrid::FillBranch(Vector p, Vector parent)
{
    if (x.AreBothBeyond(p.x, parent.x) || y.AreBothBeyond(p.y, parent.y) || z.AreBothBeyond(p.z, parent.z))
        return;
    FillAround(p, p, parent);
    FillAround(parent, p, parent);
    for (int k = 1; k < kSampleParts; k++)
        FillAround(p + (k / static_cast<double>(kSampleParts)) * (parent - p), p, parent);
}

void BoxGrid::FillAround(Vector sample, Vector p, Vector parent)
{
    const Range rx = x.FindAll(sample.x), ry = y.FindAll(sample.y), rz = z.FindAll(sample.z);
    for (int i = rx.first; i <= rx.last; i++)
        for (int j = ry.first; j <= ry.last; j++)
            for (int k = rz.first; k <= rz.last; k++)
                FillBox(Index(i, j, k), p, parent);
}

void BoxGrid::FillBox(std::size_t index, Vector p, Vector parent)
{
    if (!occupied[index] && LineInBox(Lower(index), Upper(index), p, parent))
        occupied[index] = 1;
}

std::size_t BoxGrid::Index(int i, int j, int k) const
{
    const std::size_t nz = z.corners.size() - 1;
    const std::size_t ny = y.corners.size() - 1;
    return (static_cast<std::size_t>(i) * ny + static_cast<std::size_t>(j)) * nz +
           static_cast<std::size_t>(k);
}

BoxGrid::Axis::Axis(Corners list)
    : corners(std::move(list)),
      perunit(static_cast<double>(corners.size() - 1) / (corners.back() - corners.front()))
{
}

bool BoxGrid::Axis::AreBothBeyond(double a, double b) const
{
    return (a < corners.front() && b < corners.front()) || (a > corners.back() && b > corners.back());
}

BoxGrid::Range BoxGrid::Axis::FindAll(double coordinate) const
{
    if (!(coordinate >= corners.front() && coordinate <= corners.back()))
        return {0, -1};
    // The guess may be off by a box or out of range; it is corrected by comparison with the corners.
    const int boxcount = static_cast<int>(corners.size()) - 1;
    const double *corner = corners.data();
    const double guess = (coordinate - corner[0]) * perunit;
    int box = guess > 0 ? static_cast<int>(std::min(guess, boxcount - 1.0)) : 0;
    while (corner[box] > coordinate)
        box--;
    while (corner[box + 1] < coordinate)
        box++;
    Range range = {box, box};
    if (range.first > 0 && corner[range.first] == coordinate)
        range.first--;
    if (range.last < boxcount - 1 && corner[range.last + 1] == coordinate)
        range.last++;
    return range;
}
