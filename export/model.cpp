#include "export/model.h"

#include <new>

#include "export/geom.h"
#include "export/points.h"
#include "export/pov.h"
#include "export/stl.h"
#include "export/vrml.h"

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
    {"stl-surface", kFormatSTL, kModeChains, 0, nullptr, "STL file", "stl", WriteSTLSurface},
};

std::span<const ModelKind> ModelKinds()
{
    return kKinds;
}

int WriteModel(FILE *file, int format, int mode)
{
    for (const ModelKind &kind : kKinds) {
        if (kind.format != format || kind.mode != mode)
            continue;
        try {
            TextWriter out(file);
            kind.write(out);
            return 1;
        } catch (const std::bad_alloc &) {
            return 0;
        }
    }
    return 0;
}
