// POV-Ray scenes: the aggregate as a union of sphere sweeps or of cones and spheres, in a frame of camera,
// lights, textures and the function that turns flow into radii; the constraint surface after it.

#pragma once

#include "export/text_writer.h"

// A sphere sweep along each chain of branches. Memory may run out: std::bad_alloc.
void WritePOVSweeps(TextWriter &out);

// A cone and a sphere for each branch.
void WritePOVCones(TextWriter &out);

// The frame: what stands before the union SARKELO, and what places it in the scene.
void POVHeader(TextWriter &out);
void POVFooter(TextWriter &out);
