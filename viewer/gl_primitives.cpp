#include "viewer/gl_primitives.h"

#include <cstdlib>
#include <initializer_list>

// Marks a function whose loops use AVX2 if the processor has it; the results are the same.
#ifdef __x86_64__
#define IN_VECTORS __attribute__((target_clones("avx2", "default")))
#else
#define IN_VECTORS
#endif

constexpr int kMostEdges = kMostFacets + 1;

namespace
{
// The angles of the edges of a cone with m facets. All kMostEdges edges are computed; those after the last facet are
// not drawn.
struct Ring {
    double theta1, theta2;
    int m = -1;
    double cosine[kMostEdges], sine[kMostEdges];
    float share[kMostEdges]; // fraction of the sweep, used as a texture coordinate
};

struct Vectors {
    double x[kConesAtOnce], y[kConesAtOnce], z[kConesAtOnce];
};

// The axes of cones, and for each two unit vectors p and q perpendicular to it
struct Frames {
    Vectors axis, p, q;
};

// Unit vectors from the axis of a cone to its edges.
struct Normals {
    double x[kMostEdges], y[kMostEdges], z[kMostEdges];
};
} // namespace

static const Ring &FindRing(double theta1, double theta2, int m);
IN_VECTORS static void FindFrames(int count, Frames *frames);
IN_VECTORS static void FindNormals(const Ring &ring, const Frames &frames, int index, Normals *normals);
static void DrawSide(const Cone &cone, const Ring &ring, const Normals &normals);
static void DrawBoxEdges(Vector lower, Vector upper);
static void DrawBoxFaces(Vector lower, Vector upper);

void CreateBox(Vector lower, Vector upper, int mode)
{
    const Vector margin = 0.05 * (upper - lower);
    switch (mode) {
    case 0:
        DrawBoxEdges(lower, upper);
        break;
    case 1:
        DrawBoxFaces(lower, upper);
        break;
    case 2:
        DrawBoxEdges(lower - margin, upper + margin);
        break;
    default:
        break;
    }
}

void CreateSimpleSphere(Vector centre, double radius, int n, int method)
{
    if (std::fabs(radius) <= 0 || std::abs(n) < 4) {
        glBegin(GL_POINTS);
        SetVertex(centre);
        glEnd();
        return;
    }
    if (method < 0 || method > 2)
        return;

    n = std::abs(n) / 2 * 2;
    const int bands = method == 2 ? n : n / 2;
    const auto latitude = [=](int edge) { return edge * (kTwoPi / 2) / bands - kTwoPi / 4; };
    for (int j = 0; j < bands; j++) {
        glBegin(method == 1 ? GL_TRIANGLE_STRIP : GL_QUAD_STRIP);
        for (int k = 0; k <= n; k++) {
            const double longitude = k * kTwoPi / n;
            for (const int edge : {j + 1, j}) {
                const double phi = latitude(edge);
                const Vector d = {std::cos(phi) * std::cos(longitude), std::sin(phi),
                                  std::cos(phi) * std::sin(longitude)};
                SetNormal(d);
                glTexCoord2f(static_cast<float>(k) / static_cast<float>(n),
                             static_cast<float>(edge) / static_cast<float>(bands));
                SetVertex(centre + radius * d);
            }
        }
        glEnd();
    }
}

void CreateCone(Vector p1, Vector p2, double r1, double r2, double theta1, double theta2, int m)
{
    const Cone cone = {p1, p2, r1, r2};
    CreateCones(&cone, nullptr, 1, theta1, theta2, m);
}

void CreateCones(const Cone *cones, const Colour *colours, int count, double theta1, double theta2, int m)
{
    Frames frames;
    for (int i = 0; i < count; i++) {
        const Vector axis = cones[i].p1 - cones[i].p2;
        frames.axis.x[i] = axis.x;
        frames.axis.y[i] = axis.y;
        frames.axis.z[i] = axis.z;
    }
    FindFrames(count, &frames);

    const Ring &ring = FindRing(theta1, theta2, m);
    for (int i = 0; i < count; i++) {
        if (colours != nullptr)
            SetColour(colours[i]);
        Normals normals;
        FindNormals(ring, frames, i, &normals);
        DrawSide(cones[i], ring, normals);
    }
}

// Returns the ring for these angles. The last one is remembered, since successive cones mostly have the same ring.
static const Ring &FindRing(double theta1, double theta2, int m)
{
    static Ring ring;
    if (ring.m == m && ring.theta1 == theta1 && ring.theta2 == theta2)
        return ring;
    ring.theta1 = theta1;
    ring.theta2 = theta2;
    ring.m = m;
    for (int i = 0; i < kMostEdges; i++) {
        const double theta = theta1 + i * (theta2 - theta1) / m;
        ring.cosine[i] = std::cos(theta);
        ring.sine[i] = std::sin(theta);
        ring.share[i] = static_cast<float>(i) / static_cast<float>(m);
    }
    return ring;
}

// As Normalise, in a form that the compiler can vectorise
static inline Vector UnitVector(Vector v)
{
    const double length = Modulus(v);
    return {length == 0 ? 0 : v.x / length, length == 0 ? 0 : v.y / length, length == 0 ? 0 : v.z / length};
}

IN_VECTORS static void FindFrames(int count, Frames *frames)
{
    auto &[axes, ps, qs] = *frames;
    for (int i = 0; i < count; i++) {
        const Vector axis = UnitVector({axes.x[i], axes.y[i], axes.z[i]});
        const bool upright = std::fabs(axis.x) + std::fabs(axis.z) == 0;
        const Vector auxiliary = axis + Vector{upright ? 1.0 : 0.0, upright ? 0.0 : 1.0, 0};
        const Vector p = UnitVector(CrossProduct(auxiliary, axis));
        const Vector q = UnitVector(CrossProduct(axis, p));
        ps.x[i] = p.x;
        ps.y[i] = p.y;
        ps.z[i] = p.z;
        qs.x[i] = q.x;
        qs.y[i] = q.y;
        qs.z[i] = q.z;
    }
}

// The normals at the ring's angles, which count from q towards p
IN_VECTORS static void FindNormals(const Ring &ring, const Frames &frames, int index, Normals *normals)
{
    const Vector p = {frames.p.x[index], frames.p.y[index], frames.p.z[index]};
    const Vector q = {frames.q.x[index], frames.q.y[index], frames.q.z[index]};
    for (int i = 0; i < kMostEdges; i++) {
        const Vector d = UnitVector(ring.cosine[i] * q + ring.sine[i] * p);
        normals->x[i] = d.x;
        normals->y[i] = d.y;
        normals->z[i] = d.z;
    }
}

static void DrawSide(const Cone &cone, const Ring &ring, const Normals &normals)
{
    glBegin(GL_QUAD_STRIP);
    for (int i = 0; i <= ring.m; i++) {
        const Vector d = {normals.x[i], normals.y[i], normals.z[i]};
        const float s = ring.share[i];
        SetNormal(d);
        glTexCoord2f(s, 0);
        SetVertex(cone.p1 + cone.r1 * d);
        SetNormal(d);
        glTexCoord2f(s, 1);
        SetVertex(cone.p2 + cone.r2 * d);
    }
    glEnd();
}

static void DrawBoxEdges(Vector lower, Vector upper)
{
    glBegin(GL_LINE_STRIP);
    SetVertex({lower.x, lower.y, lower.z});
    SetVertex({upper.x, lower.y, lower.z});
    SetVertex({upper.x, lower.y, upper.z});
    SetVertex({lower.x, lower.y, upper.z});
    SetVertex({lower.x, lower.y, lower.z});
    SetVertex({lower.x, upper.y, lower.z});
    SetVertex({upper.x, upper.y, lower.z});
    SetVertex({upper.x, upper.y, upper.z});
    SetVertex({lower.x, upper.y, upper.z});
    SetVertex({lower.x, upper.y, lower.z});
    glEnd();
    glBegin(GL_LINES);
    SetVertex({upper.x, lower.y, lower.z});
    SetVertex({upper.x, upper.y, lower.z});
    SetVertex({upper.x, lower.y, upper.z});
    SetVertex({upper.x, upper.y, upper.z});
    SetVertex({lower.x, lower.y, upper.z});
    SetVertex({lower.x, upper.y, upper.z});
    glEnd();
}

static void DrawBoxFaces(Vector lower, Vector upper)
{
    const auto face = [](Vector normal, Vector a, Vector b, Vector c, Vector d) {
        SetNormal(normal);
        for (const Vector &corner : {a, b, c, d})
            SetVertex(corner);
    };
    const auto [x0, y0, z0] = lower;
    const auto [x1, y1, z1] = upper;
    glBegin(GL_QUADS);
    face({0, 0, -1}, {x0, y0, z0}, {x0, y1, z0}, {x1, y1, z0}, {x1, y0, z0});
    face({0, 0, 1}, {x0, y0, z1}, {x1, y0, z1}, {x1, y1, z1}, {x0, y1, z1});
    face({-1, 0, 0}, {x0, y0, z0}, {x0, y0, z1}, {x0, y1, z1}, {x0, y1, z0});
    face({1, 0, 0}, {x1, y0, z0}, {x1, y1, z0}, {x1, y1, z1}, {x1, y0, z1});
    face({0, -1, 0}, {x0, y0, z0}, {x1, y0, z0}, {x1, y0, z1}, {x0, y0, z1});
    face({0, 1, 0}, {x0, y1, z0}, {x0, y1, z1}, {x1, y1, z1}, {x1, y1, z0});
    glEnd();
}
