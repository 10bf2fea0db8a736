// POV-Ray scenes: the aggregate as a union of sphere sweeps or of cones and spheres. Before it come the camera, the
// lights, the textures and the function that turns flow into radii; after it comes the constraint surface.

#pragma once

#include "export/text_writer.h"

// A sphere sweep along each chain of branches. Throws std::bad_alloc if memory does not suffice.
void WritePOVSweeps(TextWriter &out);

// A cone and a sphere for each branch.
void WritePOVCones(TextWriter &out);

// The text before the union SARKELO, and the text after it that places the union in the scene
void POVHeader(TextWriter &out);
void POVFooter(TextWriter &out);
