#include "export/pov.h"

#include <vector>

#include "export/branches.h"

namespace
{
// A point of a chain, and the flow through its particle.
struct ChainPoint {
    Vector p;
    double weight;
};
} // namespace

static void WriteSettings(TextWriter &out);
static void WriteCamera(TextWriter &out);
static void WriteTextures(TextWriter &out);
static void WriteUnionStart(TextWriter &out);
static void WriteUnionEnd(TextWriter &out);
static void CollectChain(int start, std::vector<ChainPoint> *points);
static void WriteChain(TextWriter &out, const std::vector<ChainPoint> &points, int start);
static void WriteSweepPoint(TextWriter &out, Vector p, double weight);
static void WriteTexture(TextWriter &out, const char *format, int index);
static void WriteSurface(TextWriter &out);
static bool HasBranchTextures();

// From the newest particle to the oldest, each particle that is in no chain yet starts a chain. The chain follows the
// parents, and ends with the first particle that is in an earlier chain or is a root.
void WritePOVSweeps(TextWriter &out)
{
    POVHeader(out);
    WriteUnionStart(out);
    for (int i = 0; i < ncells; i++)
        cells[i].visited = cells[i].parent < 0;
    std::vector<ChainPoint> points;
    for (int start = ncells - 1; start >= 0; start--) {
        if (cells[start].visited)
            continue;
        CollectChain(start, &points);
        WriteChain(out, points, start);
    }
    WriteUnionEnd(out);
    POVFooter(out);
    WriteSurface(out);
}

// Writes flows, which the function CalcRadius in the scene turns into radii.
void WritePOVCones(TextWriter &out)
{
    POVHeader(out);
    WriteUnionStart(out);
    ForEachBranch([&](const Branch &branch) {
        const double weight = cells[branch.index].weight;
        out.Print(" cone {\n"
                  "  <%g,%g,%g>,   CalcRadius(%g,%g)\n"
                  "  <%g,%g,%g>,   CalcRadius(%g,%g)\n",
                  branch.from, cells[branch.parent].weight, growthstate.maxweight, branch.to, weight,
                  growthstate.maxweight);
        WriteTexture(out, "  texture { DLATEXTURE%d }\n", branch.index);
        out.Print(" }\n"
                  " sphere {\n"
                  "  <%g,%g,%g>,   CalcRadius(%g,%g)\n",
                  branch.to, weight, growthstate.maxweight);
        WriteTexture(out, "  texture { DLATEXTURE%d }\n", branch.index);
        out.Print(" }\n");
    });
    WriteUnionEnd(out);
    POVFooter(out);
    WriteSurface(out);
}

// Before and after the union ----------------------------------------------------------------------------

void POVHeader(TextWriter &out)
{
    out.Print("/*\n"
              " 3D DLA structure from sarkelo by Orvandel\n"
              " Number of particles: %d\n"
              " Maximum radius: %g\n"
              "*/\n"
              "\n"
              "#declare DLARADIUS = %g;\n"
              "\n",
              ncells, growthstate.radius, growthstate.radius);
    WriteSettings(out);
    WriteCamera(out);
    WriteTextures(out);
}

void POVFooter(TextWriter &out)
{
    out.Print("// An instance of the dla structure\n"
              "object {\n"
              " SARKELO\n");
    if (!HasBranchTextures())
        out.Print(" texture { DLATEXTURE0 }\n");
    out.Print(" /*\n"
              " transform {\n"
              "  scale <1,1,1>\n"
              "  rotate <0,0,0>\n"
              "  translate <0,0,0>\n"
              " }\n"
              " */\n"
              "}\n"
              "\n");
}

static void WriteSettings(TextWriter &out)
{
    out.Print("global_settings {\n"
              " assumed_gamma 1\n"
              " max_trace_level 5 // increase this if necessary\n"
              " ambient_light rgb <1,1,1>\n"
              "}\n"
              "\n"
              "// Background colour\n"
              "background {\n"
              " color rgb <0,0,0>\n"
              "}\n"
              "\n"
              "// Function that controls the radius of the branches\n"
              "// Change this for different radii distributions\n"
              "#local MINR = %g;\n"
              "#local MAXR = %g;\n"
              "#local CalcRadius = function(r,rmax)\n"
              "{\n"
              " MINR + (MAXR - MINR) * log(r+1) / log(rmax+1)\n"
              "}\n"
              "\n",
              growthstate.thickto, growthstate.thickfrom);
}

static void WriteCamera(TextWriter &out)
{
    out.Print("// Camera\n"
              "#declare VP = <%g,%g,%g>;\n"
              "#declare VU = <%g,%g,%g>;\n"
              "#declare LEFTRIGHT = -1; // Left or right handed\n"
              "#declare VZ = 1.0; // Zoom\n"
              "camera {\n"
              " perspective\n"
              " location VZ*VP\n"
              " up y\n"
              " right LEFTRIGHT*image_width*x/image_height\n"
              " angle %g // Aperture in degrees\n"
              " sky VU\n"
              " look_at <0,0,0> // Assumes seeds at or near origin\n"
              "}\n"
              "\n"
              "// Light sources\n"
              "light_source {\n"
              " VP // At the camera\n"
              " color rgb <1,1,1>/2\n"
              "}\n"
              "light_source {\n"
              " DLARADIUS*<0,0,1>\n"
              " color rgb <1,1,1>\n"
              "}\n"
              "\n",
              camera.vp, camera.vu, camera.aperture);
}

static void WriteTextures(TextWriter &out)
{
    out.Print("#declare thefinish = finish {\n"
              " ambient 0.1\n"
              " diffuse 0.7\n"
              " specular 0.5\n"
              "}\n"
              "#declare thenormal = normal {\n"
              " granite\n"
              " scale 1\n"
              "}\n"
              "// Default texture for the branches\n");
    for (int k = 0; k < growthstate.nroots; k++)
        out.Print("#declare DLATEXTURE%d = texture {\n"
                  " pigment { rgb %g*<185/256,190/256,50/256> }\n"
                  " finish { thefinish }\n"
                  " normal { thenormal }\n"
                  "}\n"
                  "\n",
                  k, (k + 1) / static_cast<double>(growthstate.nroots));
}

// The union ---------------------------------------------------------------------------------------------

static void WriteUnionStart(TextWriter &out)
{
    if (nstltri > 0)
        out.Print("// STL surface information\n"
                  "#declare SHOWSTL = 1; // 0 is off, 1 is on\n"
                  "#declare STLTEXTURE = texture {\n"
                  " pigment { color rgbt <0.8,0.8,1.0,0.75> }\n"
                  "}\n"
                  "\n");
    out.Print("// The DLA structure\n"
              "#declare SARKELO = union {\n");
}

static void WriteUnionEnd(TextWriter &out)
{
    out.Print("}\n");
}

static void CollectChain(int start, std::vector<ChainPoint> *points)
{
    points->clear();
    int i = start;
    for (bool joined = false; !joined; i = cells[i].parent) {
        joined = cells[i].visited;
        cells[i].visited = 1;
        points->push_back({cells[i].p, cells[i].weight});
    }
}

// Writes a sphere sweep through all points and one more beyond each end; for only two points a cone. The cone's
// second end has its radius from the first end's flow, with twice the second end's flow as the largest flow if that
// is less than the aggregate's (kept).
static void WriteChain(TextWriter &out, const std::vector<ChainPoint> &points, int start)
{
    const int count = static_cast<int>(points.size());
    const ChainPoint &first = points.front();
    const ChainPoint &last = points.back();
    out.Print(" // Length: %d\n", count);
    if (count == 2) {
        out.Print(" cone {\n"
                  "  <%g,%g,%g>,   CalcRadius(%g,%g)\n"
                  "  <%g,%g,%g>,   CalcRadius(%g,min(2*%g,%g))\n",
                  first.p, first.weight, growthstate.maxweight, last.p, first.weight, last.weight,
                  growthstate.maxweight);
        WriteTexture(out, "  texture { DLATEXTURE%d }\n", start);
    } else {
        out.Print(" sphere_sweep {\n"
                  "  cubic_spline\n"
                  "  %d\n",
                  count + 2);
        WriteSweepPoint(out, 2 * first.p - points[1].p, first.weight);
        for (const ChainPoint &point : points)
            WriteSweepPoint(out, point.p, point.weight);
        WriteSweepPoint(out, 2 * last.p - points[points.size() - 2].p, last.weight);
        WriteTexture(out, " texture { DLATEXTURE%d }\n", start);
    }
    out.Print(" }\n"
              "\n");
}

static void WriteSweepPoint(TextWriter &out, Vector p, double weight)
{
    out.Print("  <%g,%g,%g>,  CalcRadius(%g,%g)\n", p, weight, growthstate.maxweight);
}

// Writes the texture of particle `index`'s class, if classes have textures of their own.
static void WriteTexture(TextWriter &out, const char *format, int index)
{
    if (HasBranchTextures())
        out.Print(format, index % growthstate.nroots);
}

static bool HasBranchTextures()
{
    return growthstate.association && growthstate.nroots >= 2;
}

static void WriteSurface(TextWriter &out)
{
    if (!IsSurfaceSaved())
        return;
    out.Print("// Constraint surface\n"
              "#if (SHOWSTL)\n"
              " union {\n");
    for (int i = 0; i < nstltri; i++)
        out.Print(" triangle {\n"
                  "  <%g,%g,%g>, <%g,%g,%g>, <%g,%g,%g>\n"
                  "  }\n",
                  stltri[i].p[0], stltri[i].p[1], stltri[i].p[2]);
    out.Print("  texture { STLTEXTURE }\n"
              "  /*\n"
              "  transform {\n"
              "   scale <1,1,1>\n"
              "   rotate <0,0,0>\n"
              "   translate <0,0,0>\n"
              "  }\n"
              "  */\n"
              " }\n"
              "#end\n"
              "\n");
}
