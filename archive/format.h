// What writing and reading aggregate files have in common.

#pragma once

#include "growth/state.h"
#include "surface/surface.h"

constexpr const char *kFormatName = "sarkelo aggregate";
constexpr int kFormatVersion = 3;
// What files of an older format do not have was at its default.
constexpr int kVersionWithWalk = 2;
constexpr int kVersionWithKilling = 3;
// Short enough to be told without memory.
constexpr const char *kNoMemory = "out of memory";

// Throws an Hdf5Fault where particles cannot be an aggregate: parents come before their children, so no chain of
// parents is a ring; roots come before all others.
void CheckParticles(const Particle *particles, int count);

// Likewise where a corner of a face is not a finite position.
void CheckFaces(const Triangle *faces, int count);

// The particles at the start without a parent.
int CountRoots(const Particle *particles, int count);
