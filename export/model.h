// The aggregate, and the constraint surface with it, as a file of another program.

#pragma once

#include <cstdio>
#include <span>

#include "export/text_writer.h"

enum ModelFormat {
    kFormatVRML,
    kFormatGEOM,
    kFormatSTL, // the constraint surface alone
    kFormatPOV,
    kFormatPointDXF, // a cloud of ten points a branch
    kFormatPointGEOM,
    kFormatVTP,
    kFormatPLY,
    kFormatPrint, // STL of the aggregate
    kFormatCSV,
    kFormatInformation
};

// What stands for a branch.
enum ModelMode {
    kModeChains,     // POV-Ray: a sphere sweep along each chain of branches; STL: nothing
    kModeSegments,   // a segment for each particle, and a sphere where the format has one
    kModeCapped,     // VRML, written as kModeSegments (kept)
    kModeCoarseMesh, // VRML, with the spheres as meshes
    kModeMediumMesh,
    kModeFineMesh
};

// A kind of file that can be saved. Branches are as thick as the flow through them, from thickto at the tips
// to thickfrom. The surface follows where its drawing mode shows it and the format has faces.
struct ModelKind {
    const char *name; // for commands
    int format, mode;
    int menuid;        // of its entry in the menu; 0: none
    const char *label; // of that entry
    const char *title; // of the file selector
    const char *extension;
    void (*write)(TextWriter &out);
};

// All kinds, those of the menu in its order.
std::span<const ModelKind> ModelKinds();

// The kind of a ModelFormat and any mode from 0 on, or nullptr: without branches where the format has no chains, and
// kModeSegments where it does not know the mode.
const ModelKind *FindModelKind(int format, int mode);

// Writes the model to an open file. Returns 1, or 0 when there is no such kind or memory does not suffice:
// the file is not whole then. Errors of writing show in the file.
int WriteModel(FILE *file, int format, int mode);
int WriteModel(FILE *file, const ModelKind &kind);
