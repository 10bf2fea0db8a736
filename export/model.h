// Exports the aggregate, and the constraint surface with it, to the formats of other programs.

#pragma once

#include <cstdio>
#include <span>

#include "export/text_writer.h"

enum ModelFormat {
    kFormatVRML,
    kFormatGEOM,
    kFormatSTL, // the constraint surface alone
    kFormatPOV,
    kFormatPointDXF, // ten points for each branch
    kFormatPointGEOM,
    kFormatVTP,
    kFormatPLY,
    kFormatPrint, // STL of the aggregate
    kFormatCSV,
    kFormatInformation
};

// How a branch is written
enum ModelMode {
    kModeChains,     // POV-Ray: a sphere sweep along each chain of branches; STL: nothing
    kModeSegments,   // a segment for each particle, and a sphere where the format has one
    kModeCapped,     // VRML, written as kModeSegments (kept)
    kModeCoarseMesh, // VRML, with the spheres as meshes
    kModeMediumMesh,
    kModeFineMesh
};

// A kind of file that can be saved. The flow through a branch determines its thickness, from thickto at the tips to
// thickfrom. The surface is included if its drawing mode shows it and the format has faces.
struct ModelKind {
    const char *name; // on command lines
    int format, mode;
    int menuid;        // id of its menu entry; 0: not in the menu
    const char *label; // text of its menu entry
    const char *title; // title of the file selector
    const char *extension;
    void (*write)(TextWriter &out);
};

// All kinds. Those in the menu come first, in the order of the menu.
std::span<const ModelKind> ModelKinds();

// The kind for a ModelFormat and a mode; nullptr if there is none. A mode above kModeSegments that the format lacks
// counts as kModeSegments. kModeChains in VRML, GEOM and point clouds, which have no chains, writes no branches.
const ModelKind *FindModelKind(int format, int mode);

// Writes the model to an open file. Returns 1, or 0 when there is no such kind or memory does not suffice; the file
// is incomplete then. Write errors are not returned: check ferror(file).
int WriteModel(FILE *file, int format, int mode);
int WriteModel(FILE *file, const ModelKind &kind);
