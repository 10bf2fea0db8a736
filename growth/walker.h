// The rules of a walker, whichever way it walks: where it starts, how long it lives, how it steps and drifts.
//
// Draws is a source of random numbers with Uniform(), in [0, 1), and Integer(), from 0 to 2^31 - 1. All functions are
// called in the loop of steps, so they are inline.

#pragma once

#include <algorithm>
#include <cmath>

#include "growth/generators.h"
#include "growth/state.h"

// Steps after which a walker that has not stuck is replaced by a new one, if walkers may not leave the launch sphere.
constexpr int kWalkerLife = 10000;

constexpr double kPercent = 0.01;

// Draws from the two generators of the run.
struct RunDraws {
    static double Uniform() { return DrawUniform(); }
    static int Integer() { return DrawInteger(); }
};

// Radius of the sphere about the origin that holds all places where a walker can stick, with a branch length to
// spare.
inline double AggregateReach()
{
    return 2 * growthstate.branchlength + growthstate.radius;
}

// Radius of the sphere about the origin on which walkers start.
inline double LaunchRadius()
{
    return growthstate.launchscale * AggregateReach();
}

// Whether walkers may leave the launch sphere and are abandoned far outside. Otherwise they do not go beyond it and
// live kWalkerLife steps.
inline bool WalkersMayLeave()
{
    return growthstate.killingscale > 1;
}

// How far the walker drifts in a step.
inline double DriftLength()
{
    return growthstate.branchlength * growthstate.bias * kPercent;
}

// A step of a branch length in a random direction, which is drawn in a cube: directions towards its corners are more
// frequent (kept).
template<typename Draws>
Vector DrawStep(Draws *draws)
{
    Vector step;
    step.x = draws->Uniform() - 0.5;
    step.y = draws->Uniform() - 0.5;
    step.z = draws->Uniform() - 0.5;
    Normalise(&step);
    return growthstate.branchlength * step;
}

// Whether pos is outside of the launch sphere. Compared by squares unless within rounding of the limit.
inline bool IsOutside(Vector pos, double launchradius)
{
    const double squared = DotProduct(pos, pos);
    constexpr double kRounding = 1e-9;
    return !(squared < (1 - kRounding) * launchradius * launchradius && launchradius > 0) &&
           std::sqrt(squared) > launchradius;
}

// Moves a walker that will be particle `number` by a length away from a root, or from a point mixed from the roots'
// coordinates. Away, although the panel says towards (kept).
template<typename Draws>
void DriftBy(double length, int number, Draws *draws, Vector *pos)
{
    const int nplaced = std::min(growthstate.nroots, number);
    if (!(growthstate.bias > 0) || nplaced < 1)
        return;

    Vector target; // what it moves away from
    if (growthstate.association) {
        const int root = number % growthstate.nroots;
        if (root >= nplaced)
            return;
        target = cells[root].p;
    } else {
        const auto draw = [=] {
            const int drawn = draws->Integer();
            return nplaced == 1 ? 0 : drawn % nplaced;
        };
        target.x = cells[draw()].p.x;
        target.y = cells[draw()].p.y;
        target.z = cells[draw()].p.z;
    }
    Vector direction = target - *pos;
    Normalise(&direction);
    *pos = *pos - length * direction;
}
