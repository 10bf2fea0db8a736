#include "viewer/gl_primitives.h"

#include <cstdlib>
#include <initializer_list>

#include <GL/gl.h>

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

    glBegin(GL_QUAD_STRIP);
    for (int i = 0; i <= m; i++) {
        const double theta = theta1 + i * (theta2 - theta1) / m;
        Vector d = std::cos(theta) * q + std::sin(theta) * p;
        Normalise(&d);
        const float s = static_cast<float>(i) / static_cast<float>(m);
        SetNormal(d);
        glTexCoord2f(s, 0);
        SetVertex(p1 + r1 * d);
        SetNormal(d);
        glTexCoord2f(s, 1);
        SetVertex(p2 + r2 * d);
    }
    glEnd();
}

void SetColour(Colour colour)
{
    glColor3f(static_cast<float>(colour.r), static_cast<float>(colour.g), static_cast<float>(colour.b));
}

void SetVertex(Vector p)
{
    glVertex3f(static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z));
}

void SetNormal(Vector n)
{
    glNormal3f(static_cast<float>(n.x), static_cast<float>(n.y), static_cast<float>(n.z));
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
