#include "export/aggregate.h"

#include <cmath>
#include <cstdlib>
#include <new>

#include "export/pov.h"
#include "export/text_writer.h"
#include "export/vrml.h"
#include "growth/array.h"
#include "growth/colour.h"
#include "growth/state.h"
#include "surface/surface.h"

// Points of a cloud along each branch.
constexpr int kCloudPoints = 10;
constexpr Colour kSurfaceColour = {0.5, 0.5, 0.5};

namespace
{
// A point of a chain, and the flow through its particle.
struct ChainPoint {
    Vector p;
    double weight;
};

// A branch of the aggregate, from a particle's parent to it.
struct Branch {
    int index, parent; // of cells
    double parentthickness, thickness;
    Colour colour;
};
} // namespace

static void WriteHeader(TextWriter &out, int format);
static void WriteTrailer(TextWriter &out, int format);

static bool WriteChains(TextWriter &out, int format);
static bool CollectChain(int start, ChainPoint **points, int *count);
static void WriteChain(TextWriter &out, const ChainPoint *points, int count, int start);
static void WriteSweepPoint(TextWriter &out, Vector p, double weight);
static void WriteTexture(TextWriter &out, const char *format, int index);

static void WriteBranches(TextWriter &out, int format, int mode);
static void WriteVRMLBranch(TextWriter &out, const Branch &branch, int mode);
static void WriteGEOMBranch(TextWriter &out, const Branch &branch);
static void WritePOVBranch(TextWriter &out, const Branch &branch);
static void WriteCloud(TextWriter &out, const Branch &branch, const char *record);

static void WriteSurface(TextWriter &out, int format);
static void WriteSTLSurface(TextWriter &out);
static void WritePOVSurface(TextWriter &out);

int WriteModel(FILE *file, int format, int mode)
{
    try {
        TextWriter out(file);
        WriteHeader(out, format);
        if (mode != kModeChains)
            WriteBranches(out, format, mode);
        else if (!WriteChains(out, format))
            return 0;
        WriteTrailer(out, format);
        if (nstltri > 0 && options.surfacemode >= kSurfaceWireframe)
            WriteSurface(out, format);
        return 1;
    } catch (const std::bad_alloc &) {
        return 0;
    }
}

// Head and foot -------------------------------------------------------------------------------------------

static void WriteHeader(TextWriter &out, int format)
{
    switch (format) {
    case kFormatVRML:
        WRLHeader(out, "3D DLA by Orvandel", 2 * growthstate.radius);
        break;
    case kFormatGEOM: // no line end: the first record's comment goes on (kept)
        out.Print("# 3D DLA by Orvandel");
        break;
    case kFormatPOV:
        POVHeader(out);
        if (nstltri > 0)
            out.Print("// STL surface information\n"
                      "#declare SHOWSTL = 1; // 0 is off, 1 is on\n"
                      "#declare STLTEXTURE = texture {\n"
                      " pigment { color rgbt <0.8,0.8,1.0,0.75> }\n"
                      "}\n"
                      "\n");
        out.Print("// The DLA structure\n"
                  "#declare SARKELO = union {\n");
        break;
    case kFormatPointDXF:
        out.Print("0\nSECTION\n2\nENTITIES\n");
        break;
    default:
        break;
    }
}

static void WriteTrailer(TextWriter &out, int format)
{
    if (format == kFormatPointDXF)
        out.Print(" 0\nENDSEC\n 0\nEOF\n"); // blanks, unlike in the head (kept)
    if (format == kFormatPOV) {
        out.Print("}\n");
        POVFooter(out);
    }
}

// Chains --------------------------------------------------------------------------------------------------

// From the newest particle on down, each particle that no chain holds yet starts one; it follows the parents
// as far as the first particle of a chain before it, or a root.
static bool WriteChains(TextWriter &out, int format)
{
    for (int i = 0; i < ncells; i++)
        cells[i].visited = cells[i].parent < 0;
    ChainPoint *points = nullptr;
    bool whole = true;
    for (int start = ncells - 1; start >= 0 && whole; start--) {
        if (cells[start].visited)
            continue;
        int count = 0;
        whole = CollectChain(start, &points, &count);
        if (whole && format == kFormatPOV)
            WriteChain(out, points, count, start);
    }
    free(points);
    return whole;
}

static bool CollectChain(int start, ChainPoint **points, int *count)
{
    int i = start;
    for (bool joined = false; !joined; i = cells[i].parent) {
        joined = cells[i].visited;
        cells[i].visited = 1;
        if (!AppendToArray(points, count, ChainPoint{cells[i].p, cells[i].weight}))
            return false;
    }
    return true;
}

// A sphere sweep through all points and one beyond each end, or a cone where there are but two. The far end
// of the cone has its radius by the flow of the near one, at most twice its own (kept).
static void WriteChain(TextWriter &out, const ChainPoint *points, int count, int start)
{
    const ChainPoint &first = points[0];
    const ChainPoint &last = points[count - 1];
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
        for (int i = 0; i < count; i++)
            WriteSweepPoint(out, points[i].p, points[i].weight);
        WriteSweepPoint(out, 2 * last.p - points[count - 2].p, last.weight);
        WriteTexture(out, " texture { DLATEXTURE%d }\n", start);
    }
    out.Print(" }\n"
              "\n");
}

static void WriteSweepPoint(TextWriter &out, Vector p, double weight)
{
    out.Print("  <%g,%g,%g>,  CalcRadius(%g,%g)\n", p, weight, growthstate.maxweight);
}

// The texture of the class of particle `index`, where classes have their own.
static void WriteTexture(TextWriter &out, const char *format, int index)
{
    if (HasBranchTextures())
        out.Print(format, index % growthstate.nroots);
}

// Segments ------------------------------------------------------------------------------------------------

static void WriteBranches(TextWriter &out, int format, int mode)
{
    const double scale = (growthstate.thickfrom - growthstate.thickto) / std::log(growthstate.maxweight + 1);
    const auto thickness = [=](int i) { return growthstate.thickto + scale * std::log(cells[i].weight + 1); };
    for (int i = 0; i < ncells; i++) {
        const int parent = cells[i].parent;
        if (parent < 0)
            continue;
        const Branch branch = {i, parent, thickness(parent), thickness(i), ChooseColour(i, options.dlamode)};
        switch (format) {
        case kFormatVRML:
            WriteVRMLBranch(out, branch, mode);
            break;
        case kFormatGEOM:
            WriteGEOMBranch(out, branch);
            break;
        case kFormatPOV:
            WritePOVBranch(out, branch);
            break;
        case kFormatPointDXF:
            WriteCloud(out, branch, "0\nPOINT\n8\nLAYER1\n10\n%g\n20\n%g\n30\n%g\n");
            break;
        case kFormatPointGEOM:
            WriteCloud(out, branch, "p %g %g %g 1 1 1\n");
            break;
        default:
            break;
        }
    }
}

static void WriteVRMLBranch(TextWriter &out, const Branch &branch, int mode)
{
    // Points a ring, of the cone and of the sphere; 0 for a sphere as such.
    struct Resolution {
        int cone, sphere;
    };
    static const Resolution kResolutions[] = {{16, 0}, {16, 0}, {16, 0}, {16, 16}, {24, 24}, {32, 24}};
    const Resolution resolution = kResolutions[mode];
    const Vector from = cells[branch.parent].p;
    const Vector to = cells[branch.index].p;
    WRLCone2(out, resolution.cone, true, from, to, branch.colour, branch.parentthickness, branch.thickness);
    if (resolution.sphere == 0)
        WRLSphere(out, to, branch.colour, branch.thickness);
    else
        WRLSphere3(out, resolution.sphere, to, branch.colour, branch.thickness);
}

static void WriteGEOMBranch(TextWriter &out, const Branch &branch)
{
    const Vector from = cells[branch.parent].p;
    const Vector to = cells[branch.index].p;
    out.Print("# From: %d to %d, thickness: %g to %g\n"
              "c %g %g %g %g %g %g %g %g %g %g %g\n"
              "s %g %g %g %g\n"
              "%g %g %g\n",
              branch.parent, branch.index, branch.parentthickness, branch.thickness, from, to,
              branch.parentthickness, branch.thickness, branch.colour, to, branch.thickness, branch.colour);
}

// Weights, not radii: the scene turns them into radii itself.
static void WritePOVBranch(TextWriter &out, const Branch &branch)
{
    const Particle &from = cells[branch.parent];
    const Particle &to = cells[branch.index];
    out.Print(" cone {\n"
              "  <%g,%g,%g>,   CalcRadius(%g,%g)\n"
              "  <%g,%g,%g>,   CalcRadius(%g,%g)\n",
              from.p, from.weight, growthstate.maxweight, to.p, to.weight, growthstate.maxweight);
    WriteTexture(out, "  texture { DLATEXTURE%d }\n", branch.index);
    out.Print(" }\n"
              " sphere {\n"
              "  <%g,%g,%g>,   CalcRadius(%g,%g)\n",
              to.p, to.weight, growthstate.maxweight);
    WriteTexture(out, "  texture { DLATEXTURE%d }\n", branch.index);
    out.Print(" }\n");
}

// Points from the parent on, the particle itself left out.
static void WriteCloud(TextWriter &out, const Branch &branch, const char *record)
{
    const Vector from = cells[branch.parent].p;
    const Vector along = cells[branch.index].p - from;
    for (int s = 0; s < kCloudPoints; s++)
        out.Print(record, Vector{from.x + along.x * s / kCloudPoints, from.y + along.y * s / kCloudPoints,
                                 from.z + along.z * s / kCloudPoints});
}

// The constraint surface ----------------------------------------------------------------------------------

static void WriteSurface(TextWriter &out, int format)
{
    switch (format) {
    case kFormatVRML:
        for (int i = 0; i < nstltri; i++)
            WRLFace(out, stltri[i].p, kSurfaceColour);
        break;
    case kFormatGEOM:
        for (int i = 0; i < nstltri; i++)
            out.Print("f3 %g %g %g %g %g %g %g %g %g 0.5 0.5 0.5\n", stltri[i].p[0], stltri[i].p[1],
                      stltri[i].p[2]);
        break;
    case kFormatSTL:
        WriteSTLSurface(out);
        break;
    case kFormatPOV:
        WritePOVSurface(out);
        break;
    default:
        break;
    }
}

static void WriteSTLSurface(TextWriter &out)
{
    out.Print("solid 2tlobject\n");
    for (int i = 0; i < nstltri; i++)
        out.Print("facet normal %g %g %g\n"
                  " outer loop\n"
                  "  vertex %g %g %g\n"
                  "  vertex %g %g %g\n"
                  "  vertex %g %g %g\n"
                  " endloop\n"
                  "endfacet\n",
                  stltri[i].n, stltri[i].p[0], stltri[i].p[1], stltri[i].p[2]);
    out.Print("endsolid");
}

static void WritePOVSurface(TextWriter &out)
{
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
