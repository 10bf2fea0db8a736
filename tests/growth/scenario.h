// Runs of growth that start from a clean state, and what they leave.

#pragma once

#include <string>
#include <vector>

#include "growth/state.h"

using GrowthStep = void (*)();

// Everything that a run decides, as numbers: the particles, the launches, the walker's position, the radius, the largest
// flow, the counts of steps and launches, and the draw that each generator would make next.
struct Outcome {
    std::vector<Particle> cells;
    std::vector<double> numbers;
};

// All growth parameters at their defaults, no surface, one root at the origin, as at program start.
void StartAfresh();

// A field of a parameter, and its value.
struct Setting {
    const void *field;
    double value;
};

// As StartAfresh, but with these parameters.
void StartWith(const std::vector<Setting> &settings);

// What the run has left; draws once from each generator.
Outcome TakeOutcome();

// Empty when two outcomes are the same to the last bit, else what differs first.
std::string Difference(const Outcome &a, const Outcome &b);

// FNV-1a over position, weight and parent of the first `count` particles.
unsigned long long HashParticles(int count);

// Grows by `step` until there are `particles` particles or `steps` steps have been taken.
void Grow(GrowthStep step, int particles, long steps);

// A surface of its own: a closed box of edge `size` about the origin, its faces outward or, where `inward`,
// inward.
void SetBoxSurface(double size, bool inward);
