// Constants and checks that writing and reading aggregate files share

#pragma once

#include "growth/state.h"
#include "surface/surface.h"

constexpr const char *kFormatName = "sarkelo aggregate";
constexpr int kFormatVersion = 4;
// Short enough for a std::string that allocates no memory
constexpr const char *kNoMemory = "out of memory";

// Throws an Hdf5Fault if the particles are no aggregate. Roots must come first, and parents before their children,
// so that no chain of parents is a ring.
void CheckParticles(const Particle *particles, int count);

// Throws an Hdf5Fault if a corner of a face is not a finite position.
void CheckFaces(const Triangle *faces, int count);

// The number of particles before the first one that has a parent
int CountRoots(const Particle *particles, int count);
