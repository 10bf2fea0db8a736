#include "export/ply.h"

#include <cmath>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "export/appearance.h"
#include "export/ring.h"
#include "growth/state.h"

// Points of a ring. A ring of radius 0 has a single point.
constexpr int kRingPoints = 8;

namespace
{
// For each particle, the child to which the tube through it continues: the child of largest flow, the oldest if
// several have it; -1 at a tip.
using MainChildren = std::vector<int>;

// A ring of a tube.
struct Ring {
    Vector centre;
    double radius;
    Colour colour;
    [[nodiscard]] int Points() const { return radius > 0 ? kRingPoints : 1; }
};

struct Counts {
    long vertices, facets;
};
} // namespace

static MainChildren FindMainChildren();
static Counts CountTubes(const MainChildren &heirs);
static void WriteVertices(TextWriter &out, const std::vector<Ring> &tube);
static long WriteFacets(TextWriter &out, const std::vector<Ring> &tube, long first);
static Vector Along(const std::vector<Ring> &tube, std::size_t k);

// Calls visit(rings) for each tube. The first ring of a side branch is at the fork, in the colour of the side branch.
template<typename Visit>
static void ForEachTube(const MainChildren &heirs, Visit visit)
{
    const BranchThickness thickness;
    const ParticleColours colours(options.dlamode);
    std::vector<Ring> tube;
    for (int i = 0; i < ncells; i++) {
        const int parent = cells[i].parent;
        if (parent < 0 || (heirs[parent] == i && cells[parent].parent >= 0))
            continue;
        tube.clear();
        tube.push_back({cells[parent].p, thickness.Of(parent), colours.Of(i)});
        for (int k = i; k >= 0; k = heirs[k])
            tube.push_back({cells[k].p, thickness.Of(k), colours.Of(k)});
        visit(tube);
    }
}

void WritePLY(TextWriter &out)
{
    const MainChildren heirs = FindMainChildren();
    const Counts counts = CountTubes(heirs);
    out.Print("ply\nformat binary_little_endian 1.0\ncomment Sarkelo aggregate\nelement vertex %s\n",
              std::to_string(counts.vertices).c_str());
    for (const char *axis : {"x", "y", "z"})
        out.Print("property float %s\n", axis);
    for (const char *colour : {"red", "green", "blue"})
        out.Print("property uchar %s\n", colour);
    out.Print("element face %s\nproperty list uchar int vertex_indices\nend_header\n",
              std::to_string(counts.facets).c_str());
    ForEachTube(heirs, [&](const std::vector<Ring> &tube) { WriteVertices(out, tube); });
    long first = 0;
    ForEachTube(heirs, [&](const std::vector<Ring> &tube) { first = WriteFacets(out, tube, first); });
}

static MainChildren FindMainChildren()
{
    MainChildren heirs(static_cast<std::size_t>(ncells), -1);
    for (int i = 0; i < ncells; i++) {
        const int parent = cells[i].parent;
        if (parent >= 0 && (heirs[parent] < 0 || cells[i].weight > cells[heirs[parent]].weight))
            heirs[parent] = i;
    }
    return heirs;
}

// Facets between two rings of a tube.
static int CountFacets(const Ring &lower, const Ring &upper)
{
    const int points = lower.Points() + upper.Points();
    return points == 2 ? 0 : points == 2 * kRingPoints ? 2 * kRingPoints : kRingPoints;
}

static Counts CountTubes(const MainChildren &heirs)
{
    Counts counts = {0, 0};
    ForEachTube(heirs, [&](const std::vector<Ring> &tube) {
        for (std::size_t k = 0; k < tube.size(); k++) {
            counts.vertices += tube[k].Points();
            counts.facets += k > 0 ? CountFacets(tube[k - 1], tube[k]) : 0;
        }
        for (const Ring &end : {tube.front(), tube.back()})
            counts.facets += end.Points() > 1 ? kRingPoints - 2 : 0;
    });
    return counts;
}

static void WriteVertices(TextWriter &out, const std::vector<Ring> &tube)
{
    const std::span<const SineCosine> angles = DivideCircle(kRingPoints, kRingPoints);
    Vector across = {0, 0, 0};
    for (std::size_t k = 0; k < tube.size(); k++) {
        const RingFrame frame = MakeRingFrame(Along(tube, k), across);
        across = frame.across; // keeps the next ring from being twisted against this one
        const Ring &ring = tube[k];
        for (int j = 0; j < ring.Points(); j++) {
            const Vector p = RingPoint(frame, ring.centre, ring.radius, angles[j]);
            for (const double coordinate : {p.x, p.y, p.z})
                out.PutBinary(static_cast<float>(coordinate));
            for (const double part : {ring.colour.r, ring.colour.g, ring.colour.b})
                out.PutBinary(static_cast<std::uint8_t>(std::lround(part * 255)));
        }
    }
}

// The direction of the tube at a ring: halfway between the directions of the branches before and after it
static Vector Along(const std::vector<Ring> &tube, std::size_t k)
{
    const auto direction = [&](std::size_t from) {
        Vector d = tube[from + 1].centre - tube[from].centre;
        Normalise(&d);
        return d;
    };
    const Vector before = k > 0 ? direction(k - 1) : direction(0);
    const Vector after = k + 1 < tube.size() ? direction(k) : before;
    Vector along = before + after;
    Normalise(&along);
    if (Modulus(along) > 0)
        return along;
    return Modulus(after) > 0 ? after : Vector{0, 0, 1}; // the branches are opposite, or have no length
}

// Writes the facets of a tube whose first vertex has the number `first`; returns the number of the next tube's first
// vertex.
static long WriteFacets(TextWriter &out, const std::vector<Ring> &tube, long first)
{
    const auto facet = [&](long a, long b, long c) {
        out.PutBinary(std::uint8_t{3});
        for (const long vertex : {a, b, c})
            out.PutBinary(static_cast<std::int32_t>(vertex));
    };
    const int bottom = tube.front().Points();
    for (int j = 1; j + 1 < bottom; j++)
        facet(first, first + j + 1, first + j);
    for (std::size_t k = 1; k < tube.size(); k++) {
        const int lower = tube[k - 1].Points();
        const int upper = tube[k].Points();
        const long next = first + lower;
        for (int j = 0; j < kRingPoints && lower + upper > 2; j++) {
            const int j1 = (j + 1) % kRingPoints;
            if (lower > 1)
                facet(first + j, first + j1, next + j1 % upper);
            if (upper > 1)
                facet(first + j % lower, next + j1, next + j);
        }
        first = next;
    }
    const int top = tube.back().Points();
    for (int j = 1; j + 1 < top; j++)
        facet(first, first + j, first + j + 1);
    return first + top;
}
