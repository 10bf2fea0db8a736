#include "surface/surface_index.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <vector>

#include "surface/surface.h"

// Boxes are enlarged by this share of a face's extent, more than the tolerances and rounding of the face tests, so
// that no face is missed for which a test holds,
constexpr double kTolerance = 1e-3;
// and by this share of its coordinates, more than single precision loses.
constexpr double kPrecision = 1e-6;
// Most parts of a node, and most faces of a node whose parts are faces.
constexpr int kParts = 8;
// Most nodes waiting in a search: the parts of one node on each of 11 levels.
constexpr int kMostOpen = 11 * kParts;

constexpr float kInfinity = std::numeric_limits<float>::infinity();

namespace
{
// An axis-aligned box in single precision; empty by default.
struct Box {
    float min[3] = {kInfinity, kInfinity, kInfinity};
    float max[3] = {-kInfinity, -kInfinity, -kInfinity};
};

struct Entry {
    Box box;
    int face;
};

// Consecutive entries.
struct Range {
    int first, count;
};

// A node of a tree of boxes (a bounding volume hierarchy, divided at medians of the longest side). Nodes are divided
// when a search first reaches them, so that a surface far larger than the aggregate costs little.
struct Node {
    int first, count; // its entries
    int family;       // index of the family of its parts; -1 until it is divided
};

// The boxes of a node's parts, which are nodes or faces, arranged so that all are compared in a few instructions.
struct alignas(64) Family {
    float min[3][kParts];
    float max[3][kParts];
    int members[kParts]; // the nodes or the faces
    int count;
};

struct SurfaceIndex {
    const Triangle *array = nullptr;
    int count = -1;
    unsigned surface = 0;
    std::vector<Entry> entries; // those of a node are consecutive
    std::vector<Node> nodes;
    std::vector<Family> families;
    std::vector<int> unbounded; // faces with a coordinate too large for a box: tested in every search
};
} // namespace

static SurfaceIndex surfaceindex;

static void BuildIfOutdated();
static void Build();
template<typename Test>
static bool Search(const Box &wanted, Test test);
static int ListMeeting(const Family &family, const Box &wanted, int *list);
static int FamilyOf(int n);
static bool HoldsFaces(const Node &node);
static void Divide(int n);
static Range SplitOff(Range *range, int multiple);
static int AddNode(int first, int count);
static void AddMember(Family *family, int member, const Box &box);
static Box BoxOfEntries(Range range);
static Box BoxOf(const Vector *points, int count, double margin);
static bool Fits(const Box &box);
static void Enclose(Box *box, const Box &part);

FaceSearch FindFaceNear(Vector p1, Vector p2, double reach, FaceTest test)
{
    if (nstltri <= 0)
        return FaceSearch::kNone;
    try {
        BuildIfOutdated();
        const Vector ends[] = {p1, p2};
        const Box wanted = BoxOf(ends, 2, reach);
        const auto holds = [=](int face) { return test(face, p1, p2); };
        return Search(wanted, holds) ? FaceSearch::kFound : FaceSearch::kNone;
    } catch (const std::bad_alloc &) {
        surfaceindex = SurfaceIndex();
        return FaceSearch::kOutOfMemory;
    }
}

// Divides all nodes, since a search divides those that it is the first to reach.
bool PrepareFaceSearch()
{
    if (nstltri <= 0)
        return true;
    try {
        BuildIfOutdated();
        for (std::size_t n = 0; n < surfaceindex.nodes.size(); n++)
            FamilyOf(static_cast<int>(n));
        return true;
    } catch (const std::bad_alloc &) {
        surfaceindex = SurfaceIndex();
        return false;
    }
}

static void BuildIfOutdated()
{
    if (surfaceindex.array != stltri || surfaceindex.count != nstltri ||
        surfaceindex.surface != SurfaceNumber())
        Build();
}

static void Build()
{
    surfaceindex.entries.clear();
    surfaceindex.entries.reserve(static_cast<std::size_t>(nstltri));
    surfaceindex.nodes.clear();
    surfaceindex.families.clear();
    surfaceindex.unbounded.clear();
    for (int i = 0; i < nstltri; i++) {
        const Box box = BoxOf(stltri[i].p, 3, 0);
        if (Fits(box))
            surfaceindex.entries.push_back({box, i});
        else
            surfaceindex.unbounded.push_back(i);
    }
    AddNode(0, static_cast<int>(surfaceindex.entries.size()));
    surfaceindex.array = stltri;
    surfaceindex.count = nstltri;
    surfaceindex.surface = SurfaceNumber();
}

// Whether the test holds for a face whose box meets the wanted one.
template<typename Test>
static bool Search(const Box &wanted, Test test)
{
    for (const int face : surfaceindex.unbounded)
        if (test(face))
            return true;
    int open[kMostOpen]; // nodes still to be searched
    open[0] = 0;
    int count = 1;
    while (count > 0) {
        const int n = open[--count];
        const Family &family = surfaceindex.families[FamilyOf(n)];
        if (!HoldsFaces(surfaceindex.nodes[n])) {
            count += ListMeeting(family, wanted, open + count);
            continue;
        }
        int faces[kParts];
        const int found = ListMeeting(family, wanted, faces);
        for (int k = 0; k < found; k++)
            if (test(faces[k]))
                return true;
    }
    return false;
}

// Lists the members whose box meets the wanted one, and returns their number; a bound that is NaN meets everything.
// The list must have room for kParts members. Written without conditional jumps, which would be mispredicted often.
static int ListMeeting(const Family &family, const Box &wanted, int *list)
{
    int apart[kParts];
    for (int k = 0; k < kParts; k++) {
        apart[k] = family.min[0][k] > wanted.max[0] ? 1 : 0;
        apart[k] |= family.max[0][k] < wanted.min[0] ? 1 : 0;
        apart[k] |= family.min[1][k] > wanted.max[1] ? 1 : 0;
        apart[k] |= family.max[1][k] < wanted.min[1] ? 1 : 0;
        apart[k] |= family.min[2][k] > wanted.max[2] ? 1 : 0;
        apart[k] |= family.max[2][k] < wanted.min[2] ? 1 : 0;
    }
    int count = 0;
    for (int k = 0; k < family.count; k++) {
        list[count] = family.members[k];
        count += 1 - apart[k];
    }
    return count;
}

// Index of the family of a node's parts; divides the node if that has not been done.
static int FamilyOf(int n)
{
    if (surfaceindex.nodes[n].family < 0)
        Divide(n);
    return surfaceindex.nodes[n].family;
}

static bool HoldsFaces(const Node &node)
{
    return node.count <= kParts;
}

// Divides a node into as few parts as possible, all full except one. A full part has 1, 8, 64... faces.
static void Divide(int n)
{
    const Node node = surfaceindex.nodes[n];
    int full = 1;
    while (full < (node.count - 1) / kParts + 1)
        full *= kParts;
    Range parts[kParts] = {{node.first, node.count}};
    int count = node.count > 0 ? 1 : 0;
    for (int k = 0; k < count; k++)
        while (parts[k].count > full)
            parts[count++] = SplitOff(&parts[k], full);
    Family family = {};
    for (int k = 0; k < count; k++) {
        const auto [first, size] = parts[k];
        AddMember(&family, full == 1 ? surfaceindex.entries[first].face : AddNode(first, size),
                  BoxOfEntries(parts[k]));
    }
    surfaceindex.nodes[n].family = static_cast<int>(surfaceindex.families.size());
    surfaceindex.families.push_back(family);
}

// Divides a range near the median along its box's longest side; *range becomes the lower part, a multiple of
// `multiple` entries. Returns the upper part.
static Range SplitOff(Range *range, int multiple)
{
    const Box box = BoxOfEntries(*range);
    int axis = 0;
    for (const int other : {1, 2})
        if (box.max[other] - box.min[other] > box.max[axis] - box.min[axis])
            axis = other;
    const auto [first, count] = *range;
    const int half = ((count - 1) / multiple + 1) / 2 * multiple;
    const auto begin = surfaceindex.entries.begin() + first;
    std::nth_element(begin, begin + half, begin + count, [axis](const Entry &a, const Entry &b) {
        return a.box.min[axis] + a.box.max[axis] < b.box.min[axis] + b.box.max[axis];
    });
    range->count = half;
    return {first + half, count - half};
}

static int AddNode(int first, int count)
{
    surfaceindex.nodes.push_back({first, count, -1});
    return static_cast<int>(surfaceindex.nodes.size()) - 1;
}

static void AddMember(Family *family, int member, const Box &box)
{
    family->members[family->count] = member;
    for (int axis = 0; axis < 3; axis++) {
        family->min[axis][family->count] = box.min[axis];
        family->max[axis][family->count] = box.max[axis];
    }
    family->count++;
}

static Box BoxOfEntries(Range range)
{
    Box box;
    for (int k = range.first; k < range.first + range.count; k++)
        Enclose(&box, surfaceindex.entries[k].box);
    return box;
}

// A box about some points, enlarged by a margin and by the tolerances.
static Box BoxOf(const Vector *points, int count, double margin)
{
    Vector min = points[0];
    Vector max = points[0];
    for (int i = 1; i < count; i++)
        MinMaxXYZ(&min, &max, points[i]);
    const Vector size = max - min;
    margin += kTolerance * (margin + std::max({size.x, size.y, size.z}));
    Box box;
    const double mins[] = {min.x, min.y, min.z};
    const double maxs[] = {max.x, max.y, max.z};
    for (int axis = 0; axis < 3; axis++) {
        box.min[axis] = static_cast<float>(mins[axis] - margin - kPrecision * std::fabs(mins[axis]));
        box.max[axis] = static_cast<float>(maxs[axis] + margin + kPrecision * std::fabs(maxs[axis]));
    }
    return box;
}

static bool Fits(const Box &box)
{
    for (int axis = 0; axis < 3; axis++)
        if (!std::isfinite(box.min[axis]) || !std::isfinite(box.max[axis]))
            return false;
    return true;
}

static void Enclose(Box *box, const Box &part)
{
    for (int axis = 0; axis < 3; axis++) {
        box->min[axis] = std::min(box->min[axis], part.min[axis]);
        box->max[axis] = std::max(box->max[axis], part.max[axis]);
    }
}
