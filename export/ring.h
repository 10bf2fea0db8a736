// Rings of points about a line: the meshes of branches consist of them.

#pragma once

#include <cmath>
#include <span>

#include "geom/vector.h"

// Two unit vectors perpendicular to a line of unit direction `along`; across, side and along are right-handed.
struct RingFrame {
    Vector across, side;
};

// The frame whose `across` is nearest to `previous`, that of the ring before; any frame for a zero vector.
inline RingFrame MakeRingFrame(Vector along, Vector previous)
{
    Vector across = previous - DotProduct(previous, along) * along;
    if (Modulus(across) < 1e-3 * Modulus(previous) || Modulus(previous) == 0) {
        // A coordinate axis far from the direction of the line
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

// Sine and cosine of the angles 2 pi k / parts, for k from 0 to points - 1. They are computed once and stay valid.
std::span<const SineCosine> DivideCircle(int points, int parts);
