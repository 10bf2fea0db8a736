// The frame of a POV-Ray scene: everything but the aggregate itself, which stands between head and foot as
// the union SARKELO.

#pragma once

#include "export/text_writer.h"

// Camera, lights, textures and the function that turns flow into radii.
void POVHeader(TextWriter &out);

// The object that places the union in the scene.
void POVFooter(TextWriter &out);

// Whether each branch has a texture of its own, one of growthstate.nroots.
bool HasBranchTextures();
