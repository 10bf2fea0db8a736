#include "surface/surface_index.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>

#include "surface/surface.h"

// Boxes are enlarged by this share of a face's extent, more than the angle and rounding tolerances of the
// tests that decide, so that no face is passed over that they would find;
constexpr double kTolerance = 1e-3;
// and by this share of its coordinates, more than they lose in single precision.
constexpr double kPrecision = 1e-6;
// Faces of a node that is not divided further.
constexpr int kLeafFaces = 8;

constexpr float kInfinity = std::numeric_limits<float>::infinity();

namespace
{
// An axis-aligned box in single precision; the default one holds nothing.
struct Box {
    float min[3] = {kInfinity, kInfinity, kInfinity};
    float max[3] = {-kInfinity, -kInfinity, -kInfinity};
};

struct Entry {
    Box box;
    int face;
};

// A node of a binary tree of boxes (a bounding volume hierarchy, divided at the median of the longest side).
// Nodes are divided when a search first comes to them: a surface far larger than the aggregate costs little.
struct Node {
    Box box;
    int first, count; // its entries
    int children;     // the first of two, which stand side by side; 0 while it is not divided
};

struct SurfaceIndex {
    const Triangle *array = nullptr;
    int count = -1;
    std::vector<Entry> entries; // by node
    std::vector<Node> nodes;
    std::vector<int> unbounded; // faces of which a coordinate does not fit a box: near everything
    std::vector<int> found;     // by the last search
    std::vector<int> open;      // nodes that it has still to look at
};
} // namespace

static SurfaceIndex surfaceindex;

static void Build();
static void Search(const Box &wanted);
static void Divide(int n);
static int AddNode(int first, int count);
static Box BoxOf(const Vector *points, int count, double margin);
static bool Fits(const Box &box);
static bool Meet(const Box &a, const Box &b);
static void Enclose(Box *box, const Box &part);

const std::vector<int> *FacesNear(Vector p1, Vector p2, double reach)
{
    const Vector ends[] = {p1, p2};
    try {
        surfaceindex.found.clear();
        if (nstltri > 0) {
            if (surfaceindex.array != stltri || surfaceindex.count != nstltri)
                Build();
            Search(BoxOf(ends, 2, reach));
        }
    } catch (const std::bad_alloc &) {
        surfaceindex = SurfaceIndex();
        return nullptr;
    }
    return &surfaceindex.found;
}

void DropSurfaceIndex()
{
    surfaceindex.count = -1;
}

static void Build()
{
    surfaceindex.entries.clear();
    surfaceindex.entries.reserve(static_cast<std::size_t>(nstltri));
    surfaceindex.nodes.clear();
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
}

static void Search(const Box &wanted)
{
    surfaceindex.found = surfaceindex.unbounded;
    surfaceindex.open.assign(1, 0);
    while (!surfaceindex.open.empty()) {
        const int n = surfaceindex.open.back();
        surfaceindex.open.pop_back();
        if (!Meet(surfaceindex.nodes[n].box, wanted))
            continue;
        Divide(n);
        const Node &node = surfaceindex.nodes[n];
        if (node.children > 0) {
            surfaceindex.open.push_back(node.children);
            surfaceindex.open.push_back(node.children + 1);
            continue;
        }
        const Entry *entry = surfaceindex.entries.data() + node.first;
        for (int k = 0; k < node.count; k++)
            if (Meet(entry[k].box, wanted))
                surfaceindex.found.push_back(entry[k].face);
    }
}

static void Divide(int n)
{
    const Node node = surfaceindex.nodes[n];
    if (node.children > 0 || node.count <= kLeafFaces)
        return;
    int axis = 0;
    for (const int other : {1, 2})
        if (node.box.max[other] - node.box.min[other] > node.box.max[axis] - node.box.min[axis])
            axis = other;
    const int half = node.count / 2;
    const auto begin = surfaceindex.entries.begin() + node.first;
    std::nth_element(begin, begin + half, begin + node.count, [axis](const Entry &a, const Entry &b) {
        return a.box.min[axis] + a.box.max[axis] < b.box.min[axis] + b.box.max[axis];
    });
    const int children = AddNode(node.first, half);
    AddNode(node.first + half, node.count - half);
    surfaceindex.nodes[n].children = children;
}

static int AddNode(int first, int count)
{
    Node node = {Box(), first, count, 0};
    for (int k = first; k < first + count; k++)
        Enclose(&node.box, surfaceindex.entries[k].box);
    surfaceindex.nodes.push_back(node);
    return static_cast<int>(surfaceindex.nodes.size()) - 1;
}

// A box about some points and all within a margin of them.
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

// Whether two boxes meet; one with a bound that is not a number meets everything.
static bool Meet(const Box &a, const Box &b)
{
    return !(a.min[0] > b.max[0] || a.max[0] < b.min[0] || a.min[1] > b.max[1] || a.max[1] < b.min[1] ||
             a.min[2] > b.max[2] || a.max[2] < b.min[2]);
}

static void Enclose(Box *box, const Box &part)
{
    for (int axis = 0; axis < 3; axis++) {
        box->min[axis] = std::min(box->min[axis], part.min[axis]);
        box->max[axis] = std::max(box->max[axis], part.max[axis]);
    }
}
