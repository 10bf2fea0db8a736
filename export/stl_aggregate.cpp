#include "export/stl_aggregate.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "export/branches.h"
#include "export/ring.h"

constexpr int kRingPoints = 8;
constexpr int kSphereRings = 3; // between the poles
constexpr std::size_t kHeaderBytes = 80;
// Radii and lengths below this fraction of the largest coordinate count as 0: coordinates have 24 bits.
constexpr double kSmallestPart = 1e-5;

namespace
{
// A corner in the precision of the file, so that corners that are equal here are equal in the file
struct Corner {
    float x, y, z;
};
using RingCorners = std::array<Corner, kRingPoints>;
} // namespace

static Corner ToCorner(Vector p);
static double LargestCoordinate();
static void WriteFacet(TextWriter &out, Corner a, Corner b, Corner c);

template<typename Emit>
static void ForEachFacetOfRings(const RingCorners &lower, const RingCorners &upper, Emit emit)
{
    for (int k = 0; k < kRingPoints; k++) {
        const int k1 = (k + 1) % kRingPoints;
        emit(lower[k], lower[k1], upper[k1]);
        emit(lower[k], upper[k1], upper[k]);
    }
}

// The side of a cone: from a ring up to its apex, or, without `up`, from its apex up to a ring
template<typename Emit>
static void ForEachFacetOfCone(const RingCorners &ring, Corner apex, bool up, Emit emit)
{
    for (int k = 0; k < kRingPoints; k++) {
        const int k1 = (k + 1) % kRingPoints;
        emit(ring[up ? k : k1], ring[up ? k1 : k], apex);
    }
}

// The disc that closes a ring; it faces up where `up`, else down.
template<typename Emit>
static void ForEachFacetOfCap(const RingCorners &ring, bool up, Emit emit)
{
    for (int k = 1; k + 1 < kRingPoints; k++)
        emit(ring[0], ring[up ? k : k + 1], ring[up ? k + 1 : k]);
}

static RingCorners MakeRing(const RingFrame &frame, Vector centre, double radius)
{
    RingCorners ring;
    static const std::span<const SineCosine> angles = DivideCircle(kRingPoints, kRingPoints);
    for (int k = 0; k < kRingPoints; k++)
        ring[k] = ToCorner(RingPoint(frame, centre, radius, angles[k]));
    return ring;
}

template<typename Emit>
static void ForEachFacetOfFrustum(Vector from, double fromradius, Vector to, double toradius, double smallest,
                                  Emit emit)
{
    Vector along = to - from;
    const bool frompoint = fromradius < smallest;
    const bool topoint = toradius < smallest;
    if (Modulus(along) < smallest || (frompoint && topoint))
        return;
    Normalise(&along);
    const RingFrame frame = MakeRingFrame(along, {0, 0, 0});
    const RingCorners lower = MakeRing(frame, from, fromradius);
    const RingCorners upper = MakeRing(frame, to, toradius);
    if (!frompoint)
        ForEachFacetOfCap(lower, false, emit);
    if (!topoint)
        ForEachFacetOfCap(upper, true, emit);
    if (frompoint)
        ForEachFacetOfCone(upper, ToCorner(from), false, emit);
    else if (topoint)
        ForEachFacetOfCone(lower, ToCorner(to), true, emit);
    else
        ForEachFacetOfRings(lower, upper, emit);
}

template<typename Emit>
static void ForEachFacetOfSphere(Vector centre, double radius, double smallest, Emit emit)
{
    if (radius < smallest)
        return;
    const RingFrame frame = {{1, 0, 0}, {0, 1, 0}};
    static const std::array<SineCosine, kSphereRings> latitudes = [] {
        std::array<SineCosine, kSphereRings> found;
        for (int i = 0; i < kSphereRings; i++)
            found[i] = FindSineCosine(kTwoPi / 2 * (i + 1) / (kSphereRings + 1) - kTwoPi / 4);
        return found;
    }();
    std::array<RingCorners, kSphereRings> rings;
    for (int i = 0; i < kSphereRings; i++)
        rings[i] =
            MakeRing(frame, centre + Vector{0, 0, radius * latitudes[i].sine}, radius * latitudes[i].cosine);
    ForEachFacetOfCone(rings.front(), ToCorner(centre - Vector{0, 0, radius}), false, emit);
    for (int i = 0; i + 1 < kSphereRings; i++)
        ForEachFacetOfRings(rings[i], rings[i + 1], emit);
    ForEachFacetOfCone(rings.back(), ToCorner(centre + Vector{0, 0, radius}), true, emit);
}

template<typename Emit>
static void ForEachFacet(Emit emit)
{
    const double scale = options.printscale;
    const double smallest = kSmallestPart * LargestCoordinate();
    const BranchThickness thickness;
    for (int i = 0; i < ncells; i++) {
        const Vector p = scale * cells[i].p;
        const double radius = scale * thickness.Of(i);
        const int parent = cells[i].parent;
        if (parent >= 0)
            ForEachFacetOfFrustum(scale * cells[parent].p, scale * thickness.Of(parent), p, radius, smallest,
                                  emit);
        ForEachFacetOfSphere(p, radius, smallest, emit);
    }
}

void WriteSTLAggregate(TextWriter &out)
{
    std::uint32_t facets = 0;
    ForEachFacet([&](Corner, Corner, Corner) { facets++; });
    const std::array<char, kHeaderBytes> header = {"Sarkelo aggregate, millimetres"};
    for (const char character : header)
        out.PutBinary(character);
    out.PutBinary(facets);
    ForEachFacet([&](Corner a, Corner b, Corner c) { WriteFacet(out, a, b, c); });
}

static Corner ToCorner(Vector p)
{
    return {static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)};
}

// Roughly the largest coordinate of the body: that of a particle, or the largest thickness if that is more
static double LargestCoordinate()
{
    double largest = std::max(growthstate.thickfrom, growthstate.thickto);
    for (int i = 0; i < ncells; i++)
        for (const double coordinate : {cells[i].p.x, cells[i].p.y, cells[i].p.z})
            largest = std::max(largest, std::fabs(coordinate));
    return options.printscale * largest;
}

static void WriteFacet(TextWriter &out, Corner a, Corner b, Corner c)
{
    const auto vector = [](Corner p) { return Vector{p.x, p.y, p.z}; };
    const Corner normal = ToCorner(CalcNormal(vector(a), vector(b), vector(c)));
    for (const Corner corner : {normal, a, b, c})
        for (const float coordinate : {corner.x, corner.y, corner.z})
            out.PutBinary(coordinate);
    out.PutBinary(std::uint16_t{0});
}
