#include "surface/surface_index.h"

#include <algorithm>
#include <limits>
#include <new>

#include "surface/surface.h"

// Boxes are enlarged by this share of a face's extent: more than the angle and rounding tolerances of the
// tests that decide, so that no face is passed over that they would find.
constexpr double kTolerance = 1e-3;
// Faces of a node that is not divided further.
constexpr int kLeafFaces = 8;

// Bounds without an inside: a box that holds nothing yet.
constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct Box {
    Vector min = {kInfinity, kInfinity, kInfinity};
    Vector max = {-kInfinity, -kInfinity, -kInfinity};

    // Whether two boxes meet; one with a coordinate that is not a number meets everything.
    [[nodiscard]] bool Meets(const Box &b) const
    {
        return !(min.x > b.max.x || max.x < b.min.x || min.y > b.max.y || max.y < b.min.y ||
                 min.z > b.max.z || max.z < b.min.z);
    }
};

// A binary tree of boxes (a bounding volume hierarchy, divided at the median of the longest side).
struct Node {
    Box box;
    int first, count; // its faces in `order`
    int children;     // the first of two, which stand side by side; 0 for a leaf
};

struct SurfaceIndex {
    const Triangle *array = nullptr;
    int count = -1;
    std::vector<int> order; // faces, each node's together
    std::vector<Node> nodes;
    std::vector<int> unbounded; // faces of which a coordinate is not finite: near everything
    std::vector<int> found;     // by the last search
    std::vector<int> open;      // nodes that it has still to look at
};

static SurfaceIndex surfaceindex;

static void Build();
static void Divide();
static void Search(const Box &cube);
static Box BoxOf(const Triangle &t);
static bool IsFinite(const Triangle &t);
static double Side(Vector v, int axis);

const std::vector<int> *FacesNear(Vector point, double reach)
{
    const double r = (1 + kTolerance) * reach;
    const Box cube = {point - Vector{r, r, r}, point + Vector{r, r, r}};
    try {
        surfaceindex.found.clear();
        if (nstltri > 0) {
            if (surfaceindex.array != stltri || surfaceindex.count != nstltri)
                Build();
            Search(cube);
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
    surfaceindex.order.clear();
    surfaceindex.unbounded.clear();
    for (int i = 0; i < nstltri; i++)
        (IsFinite(stltri[i]) ? surfaceindex.order : surfaceindex.unbounded).push_back(i);
    surfaceindex.nodes.clear();
    if (!surfaceindex.order.empty()) {
        surfaceindex.nodes.push_back({Box(), 0, static_cast<int>(surfaceindex.order.size()), 0});
        Divide();
    }
    surfaceindex.array = stltri;
    surfaceindex.count = nstltri;
}

static void Search(const Box &cube)
{
    std::vector<int> &found = surfaceindex.found;
    found = surfaceindex.unbounded;
    std::vector<int> &open = surfaceindex.open;
    open.assign(surfaceindex.nodes.empty() ? 0 : 1, 0);
    while (!open.empty()) {
        const Node &node = surfaceindex.nodes[static_cast<std::size_t>(open.back())];
        open.pop_back();
        if (!node.box.Meets(cube))
            continue;
        if (node.children > 0) {
            open.push_back(node.children);
            open.push_back(node.children + 1);
            continue;
        }
        for (int k = node.first; k < node.first + node.count; k++) {
            const int i = surfaceindex.order[static_cast<std::size_t>(k)];
            if (BoxOf(stltri[i]).Meets(cube))
                found.push_back(i);
        }
    }
    std::sort(found.begin(), found.end());
}

// Gives every node its box and divides it, from the root on.
static void Divide()
{
    for (std::size_t n = 0; n < surfaceindex.nodes.size(); n++) {
        Node node = surfaceindex.nodes[n];
        const auto begin = surfaceindex.order.begin() + node.first;
        for (auto i = begin; i != begin + node.count; ++i) {
            const Box box = BoxOf(stltri[*i]);
            MinMaxXYZ(&node.box.min, &node.box.max, box.min);
            MinMaxXYZ(&node.box.min, &node.box.max, box.max);
        }
        if (node.count > kLeafFaces) {
            const Vector size = node.box.max - node.box.min;
            const int axis = size.x >= size.y && size.x >= size.z ? 0 : (size.y >= size.z ? 1 : 2);
            const int half = node.count / 2;
            std::nth_element(begin, begin + half, begin + node.count, [axis](int a, int b) {
                return Side(stltri[a].midpoint, axis) < Side(stltri[b].midpoint, axis);
            });
            node.children = static_cast<int>(surfaceindex.nodes.size());
            surfaceindex.nodes.push_back({Box(), node.first, half, 0});
            surfaceindex.nodes.push_back({Box(), node.first + half, node.count - half, 0});
        }
        surfaceindex.nodes[n] = node;
    }
}

static Box BoxOf(const Triangle &t)
{
    Box box;
    for (const Vector &corner : t.p)
        MinMaxXYZ(&box.min, &box.max, corner);
    const Vector size = box.max - box.min;
    const double margin = kTolerance * std::max({size.x, size.y, size.z});
    box.min = box.min - Vector{margin, margin, margin};
    box.max = box.max + Vector{margin, margin, margin};
    return box;
}

static bool IsFinite(const Triangle &t)
{
    const auto finite = [](Vector v) {
        return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
    };
    return finite(t.p[0]) && finite(t.p[1]) && finite(t.p[2]) && finite(t.midpoint);
}

static double Side(Vector v, int axis)
{
    return axis == 0 ? v.x : (axis == 1 ? v.y : v.z);
}
