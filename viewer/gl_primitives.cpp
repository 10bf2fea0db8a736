#include "viewer/gl_primitives.h"

#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <vector>

namespace
{
// An edge of a cone: the cosine and sine of its angle, and the fraction of the sweep up to it
struct Edge {
    double cosine, sine;
    float share;
};
} // namespace

static const std::vector<Edge> &FindEdges(double theta1, double theta2, int m);

void CreateBox(Vector lower, Vector upper)
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

void CreateSimpleSphere(Vector centre, double radius, int n)
{
    if (std::fabs(radius) <= 0 || std::abs(n) < 4) {
        glBegin(GL_POINTS);
        SetVertex(centre);
        glEnd();
        return;
    }
    n = std::abs(n) / 2 * 2;
    const int bands = n / 2;
    for (int j = 0; j < bands; j++) {
        glBegin(GL_QUAD_STRIP);
        for (int k = 0; k <= n; k++) {
            const double longitude = k * kTwoPi / n;
            for (const int edge : {j + 1, j}) {
                const double phi = edge * (kTwoPi / 2) / bands - kTwoPi / 4;
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
    const bool isupright = std::fabs(axis.x) + std::fabs(axis.z) == 0;
    Vector p = CrossProduct(axis + (isupright ? Vector{1, 0, 0} : Vector{0, 1, 0}), axis);
    Normalise(&p);
    Vector q = CrossProduct(axis, p);
    Normalise(&q);
    const std::vector<Edge> &edges = FindEdges(theta1, theta2, m);
    glBegin(GL_QUAD_STRIP);
    for (const Edge &edge : edges) {
        Vector d = edge.cosine * q + edge.sine * p;
        Normalise(&d);
        const float s = edge.share;
        SetNormal(d);
        glTexCoord2f(s, 0);
        SetVertex(p1 + r1 * d);
        SetNormal(d);
        glTexCoord2f(s, 1);
        SetVertex(p2 + r2 * d);
    }
    glEnd();
}

// Returns the edges of a cone of m facets. The last ones are remembered, since successive cones mostly have the same.
static const std::vector<Edge> &FindEdges(double theta1, double theta2, int m)
{
    static std::vector<Edge> edges;
    static double start = 0, end = 0;
    if (static_cast<int>(edges.size()) == m + 1 && start == theta1 && end == theta2)
        return edges;
    start = theta1;
    end = theta2;
    edges.clear();
    for (int i = 0; i <= m; i++) {
        const double theta = theta1 + i * (theta2 - theta1) / m;
        edges.push_back({std::cos(theta), std::sin(theta), static_cast<float>(i) / static_cast<float>(m)});
    }
    return edges;
}
