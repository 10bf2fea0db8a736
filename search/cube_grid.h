// Cutting space into cubes, for both structures of the neighbour search.

#pragma once

#include <cmath>

#include "geom/vector.h"

// Cubes are larger than the distance they represent by this factor, so that a coordinate rounded across a cube's
// border cannot hide a particle.
constexpr double kMargin = 1.01;
// Coordinates beyond this, in cubes, cannot be assigned to a cube reliably.
constexpr double kFarthestCube = 1e9;

// floor() of a value that fits an int, without a function call.
inline int Floor(double value)
{
    const int truncated = static_cast<int>(value);
    return truncated - (value < truncated ? 1 : 0);
}

// Whether every coordinate, in cubes, is within kFarthestCube; false for NaN.
inline bool HasCube(Vector c)
{
    return std::fabs(c.x) < kFarthestCube && std::fabs(c.y) < kFarthestCube && std::fabs(c.z) < kFarthestCube;
}
