#include "floor.h"

#include <cstdlib>
#include <random>
#include <vector>

#include "aggregate.h"
#include "growth/sources.h"
#include "growth/state.h"

// What the loop computes, so that no part of it can be left out.
static volatile double kept;

double TimeFloor(long steps)
{
    static Vector pos = {0, 0, 0};
    if (Modulus(pos) > 2 * growthstate.branchlength + growthstate.radius)
        pos = {0, 0, 0};
    const SineCosine theta = FindSineCosine(growthstate.rotation * kDegreesToRadians);
    const double start = Now();
    double sum = 0;
    for (long step = 0; step < steps; step++) {
        const double launchradius = 2 * growthstate.branchlength + growthstate.radius;
        const Vector undo = pos;
        Vector direction;
        direction.x = drand48() - 0.5;
        direction.y = drand48() - 0.5;
        direction.z = drand48() - 0.5;
        Normalise(&direction);
        pos = pos + growthstate.branchlength * direction;
        if (Modulus(pos) > launchradius) {
            pos = undo;
            continue;
        }
        if (growthstate.bias > 0) {
            Vector target;
            if (growthstate.association) {
                target = cells[ncells % growthstate.nroots].p;
            } else {
                target.x = cells[rand() % growthstate.nroots].p.x;
                target.y = cells[rand() % growthstate.nroots].p.y;
                target.z = cells[rand() % growthstate.nroots].p.z;
            }
            Vector towards = target - pos;
            Normalise(&towards);
            pos = pos - (growthstate.branchlength * growthstate.bias * 0.01) * towards;
        }
        if (growthstate.rotation != 0)
            pos = ArbitraryRotate(pos, theta, Vector{0, 0, 1});
        sum += drand48();
    }
    kept = sum + pos.x;
    return Now() - start;
}

double TimeChain(long steps)
{
    static const std::vector<Vector> directions = [] {
        std::vector<Vector> drawn(4096);
        std::mt19937 random(1); // not growth's generators
        std::uniform_real_distribution<double> coordinate(-0.5, 0.5);
        for (Vector &direction : drawn) {
            direction = {coordinate(random), coordinate(random), coordinate(random)};
            Normalise(&direction);
        }
        return drawn;
    }();
    static Vector pos = {0, 0, 0};
    const double limit = 100;
    const double drift = 0.001;
    const Vector root = {0, 0, 0};
    const double start = Now();
    for (long step = 0; step < steps; step++) {
        const Vector undo = pos;
        pos = pos + directions[static_cast<std::size_t>(step) % directions.size()];
        if (Modulus(pos) > limit) {
            pos = undo;
            continue;
        }
        Vector direction = root - pos;
        Normalise(&direction);
        pos = pos - drift * direction;
    }
    kept = pos.x;
    return Now() - start;
}
