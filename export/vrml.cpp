#include "export/vrml.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <map>
#include <span>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "export/branches.h"
#include "export/ring.h"

constexpr double kPi = kTwoPi / 2;
constexpr int kFewestPoints = 4;
constexpr Colour kSurfaceColour = {0.5, 0.5, 0.5};
// As the resolution of a sphere: write a Sphere node, not a mesh.
constexpr int kNoMesh = 0;

static void WriteWorld(TextWriter &out, int coneresolution, int sphereresolution);
static const std::vector<SineCosine> &DivideMeridian(int bands);
static const std::string &SphereIndices(int bands);
static const std::string &ConeIndices(int resolution, bool caps, bool firstcap, bool secondcap);
static void AppendIndices(std::string *text, std::initializer_list<int> indices, const char *end);
static void BeginMesh(TextWriter &out, Colour colour);
static void BeginIndices(TextWriter &out);
static void EndMesh(TextWriter &out);

void WriteVRML(TextWriter &out)
{
    WriteWorld(out, 16, kNoMesh);
}

void WriteCoarseVRML(TextWriter &out)
{
    WriteWorld(out, 16, 16);
}

void WriteMediumVRML(TextWriter &out)
{
    WriteWorld(out, 24, 24);
}

void WriteFineVRML(TextWriter &out)
{
    WriteWorld(out, 32, 24);
}

static void WriteWorld(TextWriter &out, int coneresolution, int sphereresolution)
{
    WRLHeader(out, "3D DLA by Orvandel", 2 * growthstate.radius);
    ForEachBranch([=, &out](const Branch &branch) {
        WRLCone2(out, coneresolution, true, branch.from, branch.to, branch.colour, branch.fromradius,
                 branch.toradius);
        if (sphereresolution == kNoMesh)
            WRLSphere(out, branch.to, branch.colour, branch.toradius);
        else
            WRLSphere3(out, sphereresolution, branch.to, branch.colour, branch.toradius);
    });
    for (int i = 0; IsSurfaceSaved() && i < nstltri; i++)
        WRLFace(out, stltri[i].p, kSurfaceColour);
}

// Nodes ---------------------------------------------------------------------------------------------------

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
    const std::vector<SineCosine> &meridian = DivideMeridian(bands);
    const std::span<const SineCosine> circle = DivideCircle(2 * bands, 2 * bands - 1);
    radius = std::fabs(radius);

    BeginMesh(out, colour);
    for (int j = 0; j <= bands; j++) {
        const double ringradius = radius * meridian[j].cosine;
        const double y = centre.y + radius * meridian[j].sine;
        for (const SineCosine &theta : circle) {
            const bool last = j == bands && &theta == &circle.back();
            out.Print(last ? "    %g %g %g\n" : "    %g %g %g,\n", centre.x + ringradius * theta.cosine, y,
                      centre.z + ringradius * theta.sine);
        }
    }
    BeginIndices(out);
    out.Print("%s", SphereIndices(bands).c_str());
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
    for (const SineCosine &theta : DivideCircle(resolution, resolution)) {
        Vector u = theta.sine * a + theta.cosine * b;
        Normalise(&u);
        out.Print("    %g %g %g,\n    %g %g %g,\n", p2 + r2 * u, p1 + r1 * u);
    }
    out.Print("    %g %g %g,\n    %g %g %g\n", p1, p2);
    BeginIndices(out);
    out.Print("%s", ConeIndices(resolution, caps, r2 > 0, r1 > 0).c_str());
    EndMesh(out);
}

// Parts that all meshes of one kind share, made once -------------------------------------------------

// Sine and cosine of the latitudes from pole to pole that bound `bands` equal bands
static const std::vector<SineCosine> &DivideMeridian(int bands)
{
    static std::map<int, std::vector<SineCosine>> meridians;
    std::vector<SineCosine> &meridian = meridians[bands];
    for (int k = static_cast<int>(meridian.size()); k <= bands; k++)
        meridian.push_back(FindSineCosine(k * kPi / bands - kPi / 2));
    return meridian;
}

// The indices of a sphere's triangles: two between each point of a ring, the next point, and the two points above
static const std::string &SphereIndices(int bands)
{
    static std::map<int, std::string> texts;
    std::string &known = texts[bands];
    if (!known.empty())
        return known;
    std::string text;
    const int ringpoints = 2 * bands;
    for (int i = 0; i < bands; i++) {
        for (int k = 0; k < ringpoints - 1; k++) {
            const int a = i * ringpoints + k;
            const int above = a + ringpoints;
            const bool last = i == bands - 1 && k == ringpoints - 2;
            AppendIndices(&text, {a, above, above + 1}, ",");
            AppendIndices(&text, {a, above + 1, a + 1}, last ? "\n" : ",\n");
        }
    }
    return known = std::move(text);
}

// The indices of a cone: for each facet, first its triangles of the caps, then its quadrilateral. The points
// alternate between the two ends; the centres of the ends come last.
static const std::string &ConeIndices(int resolution, bool caps, bool firstcap, bool secondcap)
{
    static std::map<std::tuple<int, bool, bool, bool>, std::string> texts;
    std::string &known = texts[{resolution, caps, firstcap, secondcap}];
    if (!known.empty())
        return known;
    std::string text;
    const int points = 2 * resolution;
    for (int k = 0; k < points; k += 2) {
        const int k1 = (k + 1) % points;
        const int k2 = (k + 2) % points;
        const int k3 = (k + 3) % points;
        if (caps && firstcap)
            AppendIndices(&text, {k1, points, k3}, ",");
        if (caps && secondcap)
            AppendIndices(&text, {k, k2, points + 1}, ",");
        AppendIndices(&text, {k, k1, k3, k2}, k + 2 < points ? ",\n" : " \n");
    }
    return known = std::move(text);
}

// Appends a face: its indices, -1, and the text `end`.
static void AppendIndices(std::string *text, std::initializer_list<int> indices, const char *end)
{
    *text += "    ";
    for (const int index : indices)
        *text += std::to_string(index) + ",";
    *text += "-1";
    *text += end;
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
