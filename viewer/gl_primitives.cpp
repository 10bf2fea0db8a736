#include "viewer/gl_primitives.h"

#include <cstdlib>
#include <initializer_list>
#include <utility>
#include <vector>

namespace
{
// The angles of a cone's edges.
struct Ring {
    double theta1, theta2;
    int m = -1;
    std::vector<double> cosine, sine;
    std::vector<float> share; // of the sweep: a texture coordinate
};

struct Directions {
    std::vector<double> x, y, z;
};
} // namespace

static const Ring &FindRing(double theta1, double theta2, int m);
static void FindDirections(const Ring &ring, Vector p, Vector q, Directions *directions);
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
    Vector axis = p1 - p2;
    Normalise(&axis);
    const bool oblique = axis.x != 0 || axis.z != 0;
    const Vector auxiliary = axis + (oblique ? Vector{0, 1, 0} : Vector{1, 0, 0});
    Vector p = CrossProduct(auxiliary, axis);
    Normalise(&p);
    Vector q = CrossProduct(axis, p);
    Normalise(&q);

    const Ring &ring = FindRing(theta1, theta2, m);
    static Directions directions;
    FindDirections(ring, p, q, &directions);
    glBegin(GL_QUAD_STRIP);
    for (std::size_t i = 0; i < ring.cosine.size(); i++) {
        const Vector d = {directions.x[i], directions.y[i], directions.z[i]};
        const float s = ring.share[i];
        SetNormal(d);
        glTexCoord2f(s, 0);
        SetVertex(p1 + r1 * d);
        SetNormal(d);
        glTexCoord2f(s, 1);
        SetVertex(p2 + r2 * d);
    }
    glEnd();
}

// The ring of the cone drawn last is kept: most cones in a row share it.
static const Ring &FindRing(double theta1, double theta2, int m)
{
    static Ring ring;
    if (ring.m == m && ring.theta1 == theta1 && ring.theta2 == theta2)
        return ring;
    Ring wanted = {theta1, theta2, m, {}, {}, {}};
    for (int i = 0; i <= m; i++) {
        const double theta = theta1 + i * (theta2 - theta1) / m;
        wanted.cosine.push_back(std::cos(theta));
        wanted.sine.push_back(std::sin(theta));
        wanted.share.push_back(static_cast<float>(i) / static_cast<float>(m));
    }
    return ring = std::move(wanted);
}

// Unit vectors at the ring's angles from q towards p. Written for the loop to run in vectors.
static void FindDirections(const Ring &ring, Vector p, Vector q, Directions *directions)
{
    const std::size_t count = ring.cosine.size();
    directions->x.resize(count);
    directions->y.resize(count);
    directions->z.resize(count);
    const double *cosine = ring.cosine.data();
    const double *sine = ring.sine.data();
    double *x = directions->x.data();
    double *y = directions->y.data();
    double *z = directions->z.data();
    for (std::size_t i = 0; i < count; i++) {
        const Vector d = cosine[i] * q + sine[i] * p;
        const double length = Modulus(d);
        x[i] = length == 0 ? 0 : d.x / length;
        y[i] = length == 0 ? 0 : d.y / length;
        z[i] = length == 0 ? 0 : d.z / length;
    }
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
