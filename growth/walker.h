// The walker of the global records (growthstate.pos): where it starts, how long it lives and how it drifts.
//
// All functions are called in the loop of steps, so they are inline.

#pragma once

#include <algorithm>
#include <climits>

#include "growth/generators.h"
#include "growth/state.h"

// Steps after which a walker that has not stuck is replaced by a new one, if walkers may not leave the launch sphere.
constexpr int kWalkerLife = 10000;

constexpr double kPercent = 0.01;

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

// Whether the walker's life is over, or none has been launched yet.
inline bool IsLaunchDue()
{
    if (WalkersMayLeave())
        return growthstate.stepcount == 0 ||
               Modulus(growthstate.pos) > growthstate.killingscale * LaunchRadius();
    return growthstate.stepcount % kWalkerLife == 0;
}

// Counts so many steps of the walker, at most kWalkerLife. Before it overflows, the count is reduced modulo
// kWalkerLife, which does not change when a launch is due.
inline void CountSteps(int steps)
{
    if (growthstate.stepcount > INT_MAX - steps)
        growthstate.stepcount %= kWalkerLife;
    growthstate.stepcount += steps;
    growthstate.steptotal += steps;
}

// How far the walker drifts in a step.
inline double DriftLength()
{
    return growthstate.branchlength * growthstate.bias * kPercent;
}

// Moves a walker by a length away from a root, or from a point mixed from the roots' coordinates. Away, although the panel
// says towards (kept).
inline void DriftBy(double length, Vector *pos)
{
    const int nplaced = std::min(growthstate.nroots, ncells);
    if (!(growthstate.bias > 0) || nplaced < 1)
        return;

    Vector target; // what it moves away from
    if (growthstate.association) {
        const int root = ncells % growthstate.nroots;
        if (root >= nplaced)
            return;
        target = cells[root].p;
    } else {
        const auto draw = [nplaced] {
            const int drawn = DrawInteger();
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
