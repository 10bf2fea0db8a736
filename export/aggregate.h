// The aggregate, and the constraint surface with it, as a file of another program.

#pragma once

#include <cstdio>

enum ModelFormat {
    kFormatVRML,
    kFormatGEOM,
    kFormatSTL, // the constraint surface alone
    kFormatPOV,
    kFormatPointDXF, // a cloud of ten points a branch
    kFormatPointGEOM
};

// What stands for a branch.
enum ModelMode {
    kModeChains,     // POV-Ray only: a sphere sweep along each chain of branches
    kModeSegments,   // a segment for each particle, from its parent to it, and a sphere where the format has
                     // one
    kModeCapped,     // VRML, written as kModeSegments (kept)
    kModeCoarseMesh, // VRML, with the spheres as meshes of 16,
    kModeMediumMesh, // 24
    kModeFineMesh    // and again 24 points a ring (kept)
};

// Writes the model to an open file. The surface follows where its drawing mode shows it and the format has
// faces. Branches are as thick as the flow through them, from thickto at the tips to thickfrom. Returns 1, or
// 0 when memory does not suffice: the file is not whole then. Errors of writing show in the file.
int WriteModel(FILE *file, int format, int mode);
