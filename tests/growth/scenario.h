// Runs of growth that start from a clean state, and what they leave.

#pragma once

#include <string>
#include <vector>

#include "growth/state.h"

using GrowthStep = void (*)();

struct Setting {
    const void *field; // of a parameter
    double value;
};

using Outcome = std::vector<double>; // everything that a run decides

// All growth parameters at their defaults, no surface, one root at the origin, as at program start.
void StartAfresh();

// As StartAfresh, but with these parameters.
void StartWith(const std::vector<Setting> &settings);

// What the run has left; draws once from each generator.
Outcome TakeOutcome();

// What differs first, empty when all is the same to the last bit.
std::string Difference(const Outcome &a, const Outcome &b);

// FNV-1a over position, weight and parent of the first `count` particles.
unsigned long long HashParticles(int count);

// Grows by `step` until there are `particles` particles or `steps` steps have been taken.
void Grow(GrowthStep step, int particles, long steps);

// The growth step written from the rules, with plain scans: shares only the global records with the program's.
void ReferenceStep();

// A closed box of edge `size` about the origin as the surface, its faces outward or `inward`.
void SetBoxSurface(double size, bool inward);
