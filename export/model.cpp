#include "export/model.h"

#include <new>
#include <utility>

#include "export/csv.h"
#include "export/geom.h"
#include "export/information.h"
#include "export/ply.h"
#include "export/points.h"
#include "export/pov.h"
#include "export/stl.h"
#include "export/stl_aggregate.h"
#include "export/vrml.h"
#include "export/vtp.h"
#include "growth/state.h"

static void WriteReport(TextWriter &out);
template<void (*write)(TextWriter &)>
static void WriteWithoutBranches(TextWriter &out);

// The ids are not in the order of the menu (kept).
static const ModelKind kKinds[] = {
    {"pov-sweep", kFormatPOV, kModeChains, 1, "PovRay (Sphere sweep)", "PovRay file", "pov", WritePOVSweeps},
    {"pov-cones", kFormatPOV, kModeSegments, 2, "PovRay (Cylinders + Spheres)", "PovRay file", "pov",
     WritePOVCones},
    {"geom", kFormatGEOM, kModeSegments, 3, "GEOM (Cylinders + Spheres)", "GEOM file", "geom", WriteGEOM},
    {"vrml", kFormatVRML, kModeSegments, 4, "VRML (Cylinders + Spheres)", "VRML file", "wrl", WriteVRML},
    {"vrml-caps", kFormatVRML, kModeCapped, 5, "VRML (Cylinders + Endcaps + Spheres)", "VRML file", "wrl",
     WriteVRML},
    {"vrml-low", kFormatVRML, kModeCoarseMesh, 8,
     "VRML (Cylinders + EndCaps + Spheres as a mesh), low resolution", "VRML file", "wrl", WriteCoarseVRML},
    {"vrml-medium", kFormatVRML, kModeMediumMesh, 9,
     "VRML (Cylinders + EndCaps + Spheres as a mesh), medium resolution", "VRML file", "wrl",
     WriteMediumVRML},
    {"vrml-high", kFormatVRML, kModeFineMesh, 10,
     "VRML (Cylinders + EndCaps + Spheres as a mesh), high resolution", "VRML file", "wrl", WriteFineVRML},
    {"dxf", kFormatPointDXF, kModeSegments, 6, "Point cloud as DXF", "POINT DXF file", "dxf", WritePointDXF},
    {"geom-points", kFormatPointGEOM, kModeSegments, 7, "Point cloud as GEOM", "POINT GEOM file", "geom",
     WritePointGEOM},
    {"stl", kFormatPrint, kModeSegments, 0, nullptr, "STL file", "stl", WriteSTLAggregate},
    {"stl-surface", kFormatSTL, kModeChains, 0, nullptr, "STL file", "stl", WriteSTLSurface},
    {"vtp", kFormatVTP, kModeSegments, 0, nullptr, "VTK file", "vtp", WriteVTP},
    {"ply", kFormatPLY, kModeSegments, 0, nullptr, "PLY file", "ply", WritePLY},
    {"csv", kFormatCSV, kModeSegments, 0, nullptr, "CSV file", "csv", WriteCSV},
    {"info", kFormatInformation, kModeSegments, 0, nullptr, "Text file", "txt", WriteReport},
};

// kModeChains in formats without chains; neither the menu nor a command line uses these.
static const ModelKind kKindsWithoutBranches[] = {
    {nullptr, kFormatVRML, kModeChains, 0, nullptr, "VRML file", "wrl", WriteWithoutBranches<WriteVRML>},
    {nullptr, kFormatGEOM, kModeChains, 0, nullptr, "GEOM file", "geom", WriteWithoutBranches<WriteGEOM>},
    {nullptr, kFormatPointDXF, kModeChains, 0, nullptr, "POINT DXF file", "dxf",
     WriteWithoutBranches<WritePointDXF>},
    {nullptr, kFormatPointGEOM, kModeChains, 0, nullptr, "POINT GEOM file", "geom",
     WriteWithoutBranches<WritePointGEOM>},
};

static void WriteReport(TextWriter &out)
{
    WriteInformation(out.Stream());
}

// Writes the header, trailer and surface of a format, by writing an aggregate without particles.
template<void (*write)(TextWriter &)>
static void WriteWithoutBranches(TextWriter &out)
{
    struct HiddenParticles {
        int count = std::exchange(ncells, 0);
        ~HiddenParticles() { ncells = count; }
    };
    const HiddenParticles hidden;
    write(out);
}

std::span<const ModelKind> ModelKinds()
{
    return kKinds;
}

const ModelKind *FindModelKind(int format, int mode)
{
    const auto find = [format](std::span<const ModelKind> kinds, int known) -> const ModelKind * {
        for (const ModelKind &kind : kinds)
            if (kind.format == format && kind.mode == known)
                return &kind;
        return nullptr;
    };
    if (const ModelKind *kind = find(kKinds, mode); kind != nullptr)
        return kind;
    return mode > kModeSegments ? find(kKinds, kModeSegments) : find(kKindsWithoutBranches, mode);
}

int WriteModel(FILE *file, int format, int mode)
{
    const ModelKind *kind = FindModelKind(format, mode);
    return kind != nullptr ? WriteModel(file, *kind) : 0;
}

int WriteModel(FILE *file, const ModelKind &kind)
{
    try {
        TextWriter out(file);
        kind.write(out);
        return 1;
    } catch (const std::bad_alloc &) {
        return 0;
    }
}
