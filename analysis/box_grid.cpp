#include "analysis/box_grid.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "growth/state.h"

// Points of a branch between its ends that LineInBox looks at: at k / kSampleParts of its length.
constexpr int kSampleParts = 10;

// From the place of a box to that of the box above it in y and in z.
constexpr int kAboveY = 1 << 8;
constexpr int kAboveZ = 1 << 16;
// Boxes from a corner within which a coordinate is not plain: more than floats, and corners that are sums of
// rounded edges, can miss among a hundred boxes.
constexpr float kPlainMargin = 1e-4F;

namespace
{
// An axis as floats, in a unit.
class FloatAxis
{
public:
    FloatAxis(const Corners &corners, double unit)
        : first(static_cast<float>(corners.front() / unit)), boxes(static_cast<float>(corners.size() - 1)),
          perunit(boxes / static_cast<float>((corners.back() - corners.front()) / unit))
    {
    }

    // The box that holds a coordinate, or -1 where that is not plain: near a corner, or outside.
    int FindPlain(float coordinate) const
    {
        float position = (coordinate - first) * perunit;
        position = position > 0 && position < boxes ? position : 0;
        const int box = static_cast<int>(position);
        const float inside = position - static_cast<float>(box);
        return inside > kPlainMargin && inside < 1 - kPlainMargin ? box : -1;
    }

private:
    float first, boxes, perunit;
};
} // namespace

// LineInBox holds only where one of its samples lies in the box, and then only if the ends do not lie beyond
// the same side of it. So it holds for the box of an end; and where both ends lie in one box, or in two that
// share a side, every sample lies in one of these.
static bool AreOneOrShareASide(int a, int b)
{
    const unsigned apart = static_cast<unsigned>(a < b ? b - a : a - b);
    constexpr unsigned steps = 1U | kAboveY | kAboveZ;
    const bool bysteps = (apart & ~steps) == 0;
    const bool atmostone = (apart & (apart - 1)) == 0; // at most one bit is set
    return bysteps && atmostone;
}

// Index of the box at a place in a grid of so many boxes in y and in z.
static unsigned IndexOf(int place, unsigned ny, unsigned nz)
{
    const auto a = static_cast<unsigned>(place);
    return (a % kAboveY * ny + a / kAboveY % kAboveY) * nz + a / kAboveZ;
}

BoxGrid::BoxGrid(const Corners &xcorners, const Corners &ycorners, const Corners &zcorners)
    : x(xcorners), y(ycorners), z(zcorners)
{
    occupied.resize((xcorners.size() - 1) * (ycorners.size() - 1) * (zcorners.size() - 1));
}

void Branches::Take(double lengthunit)
{
    const auto count = static_cast<std::size_t>(ncells);
    unit = lengthunit;
    const double perunit = 1 / unit;
    x.resize(count);
    y.resize(count);
    z.resize(count);
    parent.resize(count);
    lowest = {HUGE_VAL, HUGE_VAL, HUGE_VAL};
    highest = {-HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
    for (std::size_t i = 0; i < count; i++) {
        const Vector p = cells[i].p;
        x[i] = static_cast<float>(p.x * perunit);
        y[i] = static_cast<float>(p.y * perunit);
        z[i] = static_cast<float>(p.z * perunit);
        parent[i] = cells[i].parent;
        MinMaxXYZ(&lowest, &highest, p);
    }
}

void BoxGrid::Fill(const Branches &branches)
{
    static std::vector<Place> places;
    std::fill(occupied.begin(), occupied.end(), static_cast<unsigned char>(0));
    const Vector lowest = branches.lowest;
    const Vector highest = branches.highest;
    if (x.Misses(lowest.x, highest.x) || y.Misses(lowest.y, highest.y) || z.Misses(lowest.z, highest.z))
        return;

    FindPlaces(branches, places);
    const unsigned ny = static_cast<unsigned>(y.corners.size() - 1);
    const unsigned nz = static_cast<unsigned>(z.corners.size() - 1);
    unsigned char *const filled = occupied.data();
    for (std::size_t i = 0; i < places.size(); i++) {
        const int parent = branches.parent[i];
        if (parent < 0)
            continue;
        const Place a = places[i];
        const Place b = places[parent];
        if (a >= 0 && b >= 0 && AreOneOrShareASide(a, b)) {
            filled[IndexOf(a, ny, nz)] = 1;
            filled[IndexOf(b, ny, nz)] = 1;
        } else {
            FillBranch(cells[i].p, cells[parent].p);
        }
    }
}

void BoxGrid::FindPlaces(const Branches &branches, std::vector<Place> &places) const
{
    const std::size_t count = branches.parent.size();
    places.resize(count);
    const FloatAxis fx(x.corners, branches.unit), fy(y.corners, branches.unit), fz(z.corners, branches.unit);
    for (std::size_t i = 0; i < count; i++) {
        const int inx = fx.FindPlain(branches.x[i]);
        const int iny = fy.FindPlain(branches.y[i]);
        const int inz = fz.FindPlain(branches.z[i]);
        places[i] = inx | (iny * kAboveY) | (inz * kAboveZ);
    }
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

void BoxGrid::FillBranch(Vector p, Vector parent)
{
    if (x.Misses(p.x, parent.x) || y.Misses(p.y, parent.y) || z.Misses(p.z, parent.z))
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

bool BoxGrid::Axis::Misses(double a, double b) const
{
    return (a < corners.front() && b < corners.front()) || (a > corners.back() && b > corners.back());
}

BoxGrid::Range BoxGrid::Axis::FindAll(double coordinate) const
{
    if (!(coordinate >= corners.front() && coordinate <= corners.back()))
        return {0, -1};
    // The guess may miss by a box, or overflow; the corners decide.
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
