#include "growth/flights.h"

#include <algorithm>
#include <cmath>

#include "growth/generators.h"
#include "growth/growth_step.h"
#include "growth/state.h"
#include "growth/walker.h"
#include "search/neighbour_search.h"

// Shortest flight, in branch lengths; where there is less room, the walker takes a step.
constexpr double kShortestFlight = 2;
// Longest flight of a walker that is mirrored at the launch sphere, in launch radii: on this scale the sphere is
// nearly flat.
constexpr double kLongestFlight = 0.15;
// Largest drift of a flight, in its radii. Drift shifts the mean end of a flight by this much; its further effect on
// the distribution of the ends, which is neglected, is of the order of its square.
constexpr double kLargestDrift = 0.05;

static double FlightRadius();
static double KnownFreeRadius();
static void Fly(double radius);
static void MirrorAtLaunchSphere();
static Vector DrawDirection();

int WalkUntilStick(int most)
{
    if (growthstate.walk != kWalkFlights)
        return IterateUntilStick(most);
    const int count = ncells;
    int made = 0;
    for (; made < most && ncells == count; made++)
        IterateFlights();
    return made;
}

void IterateFlights()
{
    const double radius = IsLaunchDue() ? 0 : FlightRadius();
    if (radius >= kShortestFlight * growthstate.branchlength)
        Fly(radius);
    else
        IterateSystem();
}

// Radius of the longest flight there is room for: it stays within the free ball, drift included.
static double FlightRadius()
{
    const double free = KnownFreeRadius();
    const double radius = WalkersMayLeave() ? free : std::min(free, kLongestFlight * LaunchRadius());
    if (!(growthstate.bias > 0))
        return radius;
    // A flight of radius r counts as many steps as its radius has branch lengths, squared, and drifts by slope r^2.
    const double slope = DriftLength() / (growthstate.branchlength * growthstate.branchlength);
    const double slowed = std::min(radius, kLargestDrift / slope);
    return std::min(slowed, free / (1 + slope * slowed));
}

// Beyond the aggregate the free radius is at least the distance to its bounding sphere, less a branch length, even
// outside of the clearance map.
static double KnownFreeRadius()
{
    const double distance = Modulus(growthstate.pos);
    const bool isbeyond = distance > AggregateReach();
    const double way = isbeyond ? distance - growthstate.radius - growthstate.branchlength : 0;
    return isbeyond && WalkersMayLeave() ? way : std::max(way, FreeRadius());
}

// Makes a flight. A walker whose life ends during it is abandoned: it can have met no particle on the way.
static void Fly(double radius)
{
    const double lengths = radius / growthstate.branchlength;
    const double left = WalkersMayLeave() ? HUGE_VAL : kWalkerLife - growthstate.stepcount % kWalkerLife;
    const double steps = std::min(std::round(lengths * lengths), left);
    CountSteps(static_cast<int>(std::min<double>(steps, kWalkerLife)));
    DriftBy(steps * DriftLength(), &growthstate.pos);
    growthstate.pos = growthstate.pos + radius * DrawDirection();
    if (!WalkersMayLeave())
        MirrorAtLaunchSphere();
}

static void MirrorAtLaunchSphere()
{
    const double distance = Modulus(growthstate.pos);
    if (distance > LaunchRadius())
        growthstate.pos = (2 * LaunchRadius() / distance - 1) * growthstate.pos;
}

// Draws a uniformly random point of the unit sphere: G. Marsaglia, "Choosing a Point from the Surface of a Sphere",
// Ann. Math. Stat. 43 (1972) 645. Made of operations that give the same bits on every machine.
static Vector DrawDirection()
{
    double u = 0, v = 0, square = 0;
    do {
        u = 2 * DrawUniform() - 1;
        v = 2 * DrawUniform() - 1;
        square = u * u + v * v;
    } while (square >= 1);
    const double lateral = 2 * std::sqrt(1 - square);
    return {lateral * u, lateral * v, 1 - 2 * square};
}
