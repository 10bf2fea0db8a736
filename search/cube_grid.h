// What the two structures of the neighbour search share: cutting space into cubes.

#pragma once

#include <cmath>

#include "geom/vector.h"

// Cubes are this much larger than the distance that they stand for, so that a coordinate rounded across a
// cube's border cannot hide a particle.
constexpr double kMargin = 1.01;
// Cubes further than this from the origin are not told apart safely.
constexpr double kFarthestCube = 1e9;

// floor() of what fits an int, without a call.
inline int Floor(double value)
{
    const int truncated = static_cast<int>(value);
    return truncated - (value < truncated ? 1 : 0);
}

// Whether every coordinate, in cubes, is near enough to be told apart; false for what is not a number.
inline bool HasCube(Vector c)
{
    return std::fabs(c.x) < kFarthestCube && std::fabs(c.y) < kFarthestCube && std::fabs(c.z) < kFarthestCube;
}
