#include "analysis/box_count.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <vector>

#include "analysis/box_grid.h"
#include "base/array.h"
#include "geom/elementary.h"
#include "growth/aggregate.h"
#include "growth/state.h"

// Ratio of a level's edge to the next level's.
constexpr double kLevelRatio = 1.5;

Box *boxes = nullptr;
int nboxes = 0;
// Capacity of the array of boxes: initially, and now.
constexpr int kFirstBoxes = 1000;
static int boxroom;

// The count under way.
static double radius; // of the aggregate, which the boxes have to cover
static double scale;  // edge of the current level's boxes
static int depth;     // the current level
// The level's boxes as three grids in the order of counting; the grid and the index in it of the next box to count.
static std::vector<BoxGrid> parts;
static std::size_t part;
static std::size_t next;
// The aggregate that the grids were filled from (AggregateNumber), and its number of particles.
static unsigned filledaggregate;
static int filledcount;
// Drawing modes of the surface and the aggregate, restored after the count.
static int save1, save2;

static int TestNextBox();
static void BeginLevel(double start);
static void ArrangeBoxes(Vector first);
static void FillParts();
static Corners ListCorners(double start);
static void CountBox(const BoxGrid &grid, std::size_t index);
static bool Advance();
static void AbandonLevel();
static void EndCount();

int CountBranches()
{
    int *children = static_cast<int *>(calloc(static_cast<std::size_t>(ncells) + 1, sizeof(int)));
    if (children == nullptr)
        return 0;
    for (int i = 0; i < ncells; i++)
        if (cells[i].parent >= 0)
            children[cells[i].parent]++;
    for (int i = 0; i < ncells; i++)
        stats.branchcount[std::min(children[i], kBranchClasses - 1)]++;
    free(children);
    return 1;
}

LineFit FitBoxCount(int first)
{
    std::vector<double> x, y;
    for (int level = first; level < kBoxLevels && stats.boxcount[level] > 0; level++) {
        x.push_back(Logarithm(1 / stats.boxsize[level]));
        y.push_back(Logarithm(stats.boxcount[level]));
    }
    return FitLine(x, y);
}

int StartBoxCount()
{
    if (!options.boxcountrequest) {
        save1 = options.surfacemode;
        save2 = options.dlamode;
    }
    options.boxcountrequest = 1;
    options.surfacemode = 0;
    options.dlamode = kAggregateLines;

    radius = growthstate.radius;
    scale = radius / 2;
    depth = 0;
    std::fill(stats.boxcount, stats.boxcount + kBoxLevels, -1);
    stats.timestep = ncells;
    try {
        BeginLevel(-radius - scale);
        return 1;
    } catch (const std::bad_alloc &) {
        AbandonLevel();
        return 0;
    }
}

int CountNextBox()
{
    if (!options.boxcountrequest)
        return 0;
    try {
        return TestNextBox();
    } catch (const std::bad_alloc &) {
        AbandonLevel();
        throw;
    }
}

static int TestNextBox()
{
    if (growthstate.radius != radius) {
        radius = growthstate.radius;
        if (!parts.empty())
            ArrangeBoxes(parts[part].Lower(next));
    }
    if (parts.empty()) { // the radius is not a positive finite number
        EndCount();
        return 1;
    }
    if (filledaggregate != AggregateNumber() || filledcount != ncells)
        FillParts();
    if (parts[part].IsOccupied(next))
        CountBox(parts[part], next);
    if (!Advance())
        return 0;

    const double start = -radius - scale; // uses the edge of the finished level (kept)
    scale /= kLevelRatio;
    depth++;
    if (depth == kBoxLevels - 1 || scale < 2 * growthstate.branchlength) {
        stats.boxsize[depth] = scale;
        stats.boxcount[depth] = 0;
        nboxes = 0;
        EndCount();
        return 1;
    }
    BeginLevel(start);
    return 0;
}

static void BeginLevel(double start)
{
    stats.boxsize[depth] = scale;
    stats.boxcount[depth] = 0;
    nboxes = 0;
    ArrangeBoxes({start, start, start});
}

// Arranges the level's boxes, beginning with the one whose lower corner is `first`, which may be off the grid of the
// others: after their first run, z and y restart at -R - scale; x never restarts.
static void ArrangeBoxes(Vector first)
{
    parts.clear();
    part = next = 0;
    if (!std::isfinite(radius) || radius <= 0)
        return;
    const Corners x = ListCorners(first.x);
    const Corners y = ListCorners(first.y);
    const Corners rest = ListCorners(-radius - scale);
    const auto head = [](const Corners &corners) { return Corners(corners.begin(), corners.begin() + 2); };
    const auto tail = [](const Corners &corners) { return Corners(corners.begin() + 1, corners.end()); };
    parts.emplace_back(head(x), head(y), ListCorners(first.z));
    parts.emplace_back(head(x), tail(y), rest);
    parts.emplace_back(tail(x), rest, rest);
    FillParts();
}

static void FillParts()
{
    for (BoxGrid &grid : parts)
        grid.Fill();
    filledaggregate = AggregateNumber();
    filledcount = ncells;
}

// Corners of the boxes along an axis from `start` to the last box whose lower corner does not exceed the radius; at
// least one box.
static Corners ListCorners(double start)
{
    Corners corners = {start, start + scale};
    while (corners.back() <= radius)
        corners.push_back(corners.back() + scale);
    return corners;
}

static void CountBox(const BoxGrid &grid, std::size_t index)
{
    stats.boxcount[depth]++;
    if (nboxes == boxroom && ResizeArray(&boxes, 2 * static_cast<std::size_t>(boxroom) + kFirstBoxes))
        boxroom = 2 * boxroom + kFirstBoxes;
    if (nboxes < boxroom) // else, for lack of memory, the box is counted but not drawn
        boxes[nboxes++] = {grid.Lower(index), grid.Upper(index)};
}

// Goes to the next box; returns true if there is none left on this level.
static bool Advance()
{
    next++;
    while (part < parts.size() && next == parts[part].Size()) {
        part++;
        next = 0;
    }
    return part == parts.size();
}

// Ends the count for lack of memory: the present level is marked as not reached.
static void AbandonLevel()
{
    stats.boxcount[depth] = -1;
    nboxes = 0;
    EndCount();
}

static void EndCount()
{
    parts.clear();
    options.boxcountrequest = 0;
    options.surfacemode = save1;
    options.dlamode = save2;
}
