// Grows an aggregate of 1,500 particles and writes it in every format to the current directory, for other
// programs to read. "surface" as argument: inside the built-in cylinder; "roots": from three associated
// roots.

#include <cstdio>
#include <cstring>

#include "export/model.h"
#include "export/slices.h"
#include "growth/growth_step.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/state.h"
#include "surface/samples.h"

static void Write(const char *name, int format, int mode)
{
    FILE *file = fopen(name, "w");
    WriteModel(file, format, mode);
    fclose(file);
}

static void Grow(int particles)
{
    while (ncells < particles)
        IterateSystem();
}

int main(int argc, char **argv)
{
    SetProgramDefaults();
    InitialiseGrowth();
    camera.vp = {60, 0, 0};
    camera.vu = {0, 0, 1};
    camera.aperture = 40;
    if (argc > 1 && strcmp(argv[1], "surface") == 0)
        BuildSample(1);
    if (argc > 1 && strcmp(argv[1], "roots") == 0) {
        growthstate.nroots = 3;
        growthstate.roottype = kRootRingZ;
        growthstate.association = 1;
        RestartFromRoots();
    }
    Grow(100);
    Write("spheres.wrl", kFormatVRML, kModeSegments);
    Write("coarse.wrl", kFormatVRML, kModeCoarseMesh);
    Write("medium.wrl", kFormatVRML, kModeMediumMesh);
    Write("fine.wrl", kFormatVRML, kModeFineMesh);
    Grow(1500);
    Write("sweep.pov", kFormatPOV, kModeChains);
    Write("cones.pov", kFormatPOV, kModeSegments);
    Write("model.geom", kFormatGEOM, kModeSegments);
    Write("cloud.dxf", kFormatPointDXF, kModeSegments);
    Write("surface.stl", kFormatSTL, kModeChains);
    return 0;
}
