#include "analysis/box_grid.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "growth/state.h"

// Points of a branch between its ends that LineInBox looks at: at k / kSampleParts of its length.
constexpr int kSampleParts = 10;

// From the place of a box to that of the box above it in y and in z, and no place: far from all.
constexpr int kAboveY = 1 << 8;
constexpr int kAboveZ = 1 << 16;
constexpr int kNowhere = INT_MIN / 2;
// Boxes from a corner within which a coordinate is not plain: far more than the corners' sums of rounded
// edges miss.
constexpr double kPlainMargin = 1e-6;

// LineInBox holds only where one of its samples lies in the box, and then only if the ends do not lie beyond
// the same side of it. So it holds for the box of an end; and where both ends lie in one box, or in two that
// share a side, every sample lies in one of these.
static bool AreOneOrShareASide(int a, int b)
{
    const unsigned apart = static_cast<unsigned>(a < b ? b - a : a - b);
    return (apart & ~(1U | kAboveY | kAboveZ)) == 0 && (apart & (apart - 1)) == 0;
}

BoxGrid::BoxGrid(Corners xcorners, Corners ycorners, Corners zcorners) : x(xcorners), y(ycorners), z(zcorners)
{
    occupied.resize((x.corners.size() - 1) * (y.corners.size() - 1) * (z.corners.size() - 1));
}

void Branches::Take()
{
    x.clear();
    y.clear();
    z.clear();
    parent.clear();
    lowest = {HUGE_VAL, HUGE_VAL, HUGE_VAL};
    highest = {-HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
    for (int i = 0; i < ncells; i++) {
        x.push_back(cells[i].p.x);
        y.push_back(cells[i].p.y);
        z.push_back(cells[i].p.z);
        parent.push_back(cells[i].parent);
        MinMaxXYZ(&lowest, &highest, cells[i].p);
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

    const std::size_t count = branches.parent.size();
    places.resize(count);
    for (std::size_t i = 0; i < count; i++)
        places[i] = Find({branches.x[i], branches.y[i], branches.z[i]});
    for (std::size_t i = 0; i < count; i++) {
        const int parent = branches.parent[i];
        if (parent < 0)
            continue;
        const Place a = places[i];
        const Place b = places[static_cast<std::size_t>(parent)];
        if (a >= 0 && AreOneOrShareASide(a, b)) {
            occupied[IndexOf(a)] = 1;
            occupied[IndexOf(b)] = 1;
        } else {
            FillBranch(branches.Position(static_cast<int>(i)), branches.Position(parent), a, b);
        }
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

std::size_t BoxGrid::IndexOf(Place a) const
{
    return Index(a % kAboveY, a / kAboveY % kAboveY, a / kAboveZ);
}

void BoxGrid::FillBranch(Vector p, Vector parent, Place a, Place b)
{
    if (x.Misses(p.x, parent.x) || y.Misses(p.y, parent.y) || z.Misses(p.z, parent.z))
        return;
    const auto fill = [=, this](Vector sample, Place place) {
        if (place < 0)
            FillAround(sample, p, parent);
        else if (place == a || place == b)
            occupied[IndexOf(place)] = 1;
        else
            FillBox(IndexOf(place), p, parent);
    };
    fill(p, a);
    fill(parent, b);
    for (int k = 1; k < kSampleParts; k++) {
        const Vector sample = p + (k / static_cast<double>(kSampleParts)) * (parent - p);
        fill(sample, Find(sample));
    }
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
    : corners(std::move(list)), mostboxes(static_cast<double>(corners.size() - 1)),
      perbox(mostboxes / (corners.back() - corners.front()))
{
}

BoxGrid::Place BoxGrid::Find(Vector p) const
{
    const Place i = x.FindPlain(p.x);
    const Place j = y.FindPlain(p.y);
    const Place k = z.FindPlain(p.z);
    return (i | j | k) < 0 ? kNowhere : i + j * kAboveY + k * kAboveZ;
}

int BoxGrid::Axis::FindPlain(double coordinate) const
{
    double position = (coordinate - corners.front()) * perbox;
    position = position > 0 && position < mostboxes ? position : 0;
    const int box = static_cast<int>(position);
    const double inside = position - box;
    return inside > kPlainMargin && inside < 1 - kPlainMargin ? box : -1;
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
    const double guess = (coordinate - corner[0]) * perbox;
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
