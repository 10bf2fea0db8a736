// What the two structures of the cell index share: cutting space into cubic cells.

#pragma once

#include <cmath>

#include "geom/vector.h"

// Cells are this much larger than the distance that they stand for, so that a coordinate rounded across a
// cell's border cannot hide a particle.
constexpr double kMargin = 1.01;
// Cells further than this from the origin are not told apart safely.
constexpr double kFarthestCell = 1e9;

// floor() of what fits an int, without a call.
inline int Floor(double value)
{
    const int truncated = static_cast<int>(value);
    return truncated - (value < truncated ? 1 : 0);
}

// Whether every coordinate, in cells, is near enough to be told apart; false for what is not a number.
inline bool HasCell(Vector c)
{
    return std::fabs(c.x) < kFarthestCell && std::fabs(c.y) < kFarthestCell && std::fabs(c.z) < kFarthestCell;
}
