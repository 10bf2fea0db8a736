// Rings of points about a line, of which the meshes of branches are made.

#pragma once

#include <cmath>
#include <span>

#include "geom/vector.h"

// Two directions across a line of unit direction `along`; across, side and along are right-handed.
struct RingFrame {
    Vector across, side;
};

// The frame nearest to `previous`, the direction across of the ring before; any for a zero vector.
inline RingFrame MakeRingFrame(Vector along, Vector previous)
{
    Vector across = previous - DotProduct(previous, along) * along;
    if (Modulus(across) < 1e-3 * Modulus(previous) || Modulus(previous) == 0) {
        // The axis that is farthest from the line.
        const Vector axis = std::fabs(along.x) < 0.6 ? Vector{1, 0, 0} : Vector{0, 1, 0};
        across = axis - DotProduct(axis, along) * along;
    }
    Normalise(&across);
    return {across, CrossProduct(along, across)};
}

// The point of a ring at an angle, counterclockwise seen from the tip of the line.
inline Vector RingPoint(const RingFrame &frame, Vector centre, double radius, SineCosine angle)
{
    return centre + radius * (angle.cosine * frame.across + angle.sine * frame.side);
}

// The first `points` multiples of the `parts`th part of the circle, from 0 on: made once, valid for good.
std::span<const SineCosine> DivideCircle(int points, int parts);
