#include "export/vrml.h"

#include <cmath>
#include <cstdlib>
#include <vector>

constexpr double kPi = kTwoPi / 2;
constexpr int kFewestPoints = 4;

static void BeginMesh(TextWriter &out, Colour colour);
static void BeginIndices(TextWriter &out);
static void EndMesh(TextWriter &out);

void WRLHeader(TextWriter &out, const char *title, double distance)
{
    out.Print("#VRML V2.0 utf8\n"
              "WorldInfo {\n"
              " title \"%s\"\n"
              " info [ \"By Orvandel\" ]\n"
              "}\n"
              "NavigationInfo {\n"
              " type [\"EXAMINE\",\"ANY\"]\n"
              " headlight TRUE\n"
              " visibilityLimit 0.0\n"
              " speed 1.0\n"
              "}\n"
              "DEF DefaultView Viewpoint {\n"
              " position 0 0 %g\n"
              " description \"Default view\"\n"
              " fieldOfView %g\n"
              "}\n",
              title, distance, kPi / 4);
}

void WRLSphere(TextWriter &out, Vector centre, Colour colour, double radius)
{
    out.Print("Transform {\n"
              " translation %g,%g,%g\n"
              " children [\n"
              "  Shape {\n"
              "   appearance Appearance {\n"
              "    material Material {\n"
              "     diffuseColor %g %g %g\n"
              "    }\n"
              "   }\n"
              "   geometry Sphere {\n"
              "    radius %g\n"
              "   }\n"
              "  }\n"
              " ]\n"
              "}\n",
              centre, colour, radius);
}

void WRLSphere3(TextWriter &out, int resolution, Vector centre, Colour colour, double radius)
{
    const int bands = std::max(std::abs(resolution), kFewestPoints) / 2;
    const int ringpoints = 2 * bands;
    radius = std::fabs(radius);

    BeginMesh(out, colour);
    for (int j = 0; j <= bands; j++) {
        const double phi = j * kPi / bands - kPi / 2;
        const double ringradius = radius * std::cos(phi);
        const double y = centre.y + radius * std::sin(phi);
        for (int k = 0; k < ringpoints; k++) {
            const double theta = kTwoPi * k / (ringpoints - 1);
            const Vector p = {centre.x + ringradius * std::cos(theta), y,
                              centre.z + ringradius * std::sin(theta)};
            out.Print("    %g %g %g", p);
            out.Print(j == bands && k == ringpoints - 1 ? "\n" : ",\n");
        }
    }
    BeginIndices(out);
    for (int i = 0; i < bands; i++) {
        for (int k = 0; k < ringpoints - 1; k++) {
            const int a = i * ringpoints + k;
            const int above = a + ringpoints;
            out.Print("    %d,%d,%d,-1,    %d,%d,%d,-1", a, above, above + 1, a, above + 1, a + 1);
            out.Print(i == bands - 1 && k == ringpoints - 2 ? "\n" : ",\n");
        }
    }
    EndMesh(out);
}

void WRLFace(TextWriter &out, std::span<const Vector> vertices, Colour colour)
{
    BeginMesh(out, colour);
    for (const Vector &vertex : vertices)
        out.Print("    %g %g %g%c\n", vertex, &vertex == &vertices.back() ? ' ' : ',');
    BeginIndices(out);
    for (int i = 0; i < static_cast<int>(vertices.size()); i++)
        out.Print("    %d,", i);
    out.Print("  -1\n"
              "  ]\n"
              "  ccw FALSE\n"
              "  solid FALSE\n"
              " }\n"
              "}\n");
}

void WRLCone2(TextWriter &out, int resolution, bool caps, Vector p1, Vector p2, Colour colour, double r1,
              double r2)
{
    Vector axis = p1 - p2;
    Normalise(&axis);
    Vector aside = axis;
    if (axis.x == 0 && axis.z == 0)
        aside.x += 1;
    else
        aside.y += 1;
    Vector a = CrossProduct(aside, axis);
    Vector b = CrossProduct(axis, a);
    Normalise(&a);
    Normalise(&b);

    BeginMesh(out, colour);
    for (int i = 0; i < resolution; i++) {
        const double theta = kTwoPi * i / resolution;
        Vector u = std::sin(theta) * a + std::cos(theta) * b;
        Normalise(&u);
        out.Print("    %g %g %g,\n    %g %g %g,\n", p2 + r2 * u, p1 + r1 * u);
    }
    out.Print("    %g %g %g,\n    %g %g %g\n", p1, p2);
    BeginIndices(out);
    const int points = 2 * resolution; // and the two centres behind them
    for (int i = 0; i < resolution; i++) {
        const char separator = i < resolution - 1 ? ',' : ' ';
        const int k = 2 * i;
        const int k1 = (k + 1) % points;
        const int k2 = (k + 2) % points;
        const int k3 = (k + 3) % points;
        if (!caps) {
            out.Print("    %d,%d,%d,%d,-1%c\n", k, k1, k3, k2, separator);
            continue;
        }
        if (r2 > 0)
            out.Print("    %d,%d,%d,-1,", k1, points, k3);
        if (r1 > 0)
            out.Print("    %d,%d,%d,-1,", k, k2, points + 1);
        out.Print("    %d,%d,%d,%d,-1%c\n", k, k1, k3, k2, separator);
    }
    EndMesh(out);
}

static void BeginMesh(TextWriter &out, Colour colour)
{
    out.Print("Shape {\n"
              " appearance Appearance {\n"
              "  material Material {\n"
              "   diffuseColor %g %g %g\n"
              "  }\n"
              " }\n"
              " geometry IndexedFaceSet {\n"
              "  coord  Coordinate {\n"
              "   point [\n",
              colour);
}

static void BeginIndices(TextWriter &out)
{
    out.Print("   ]\n"
              "  }\n"
              "  coordIndex [\n");
}

static void EndMesh(TextWriter &out)
{
    out.Print("  ]\n"
              "  solid FALSE\n"
              " }\n"
              "}\n");
}
