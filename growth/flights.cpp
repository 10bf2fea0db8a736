#include "growth/flights.h"

#include <algorithm>
#include <cmath>

#include "growth/refusal.h"
#include "growth/sources.h"
#include "growth/state.h"
#include "growth/walker.h"

// Shortest flight, in branch lengths; where there is less room, the walker takes a step.
constexpr double kShortestFlight = 2;
// Walkers are mirrored so far within the launch sphere, in branch lengths. Steps that would leave it are not made, so
// near it a walker moves less along the sphere. Integrated over the depth, what is missing is a layer of this thickness
// without such moves: with u the part of a step along the radius, uniform in -1..1, the mean of (1 - u^2) / 2 over the
// steps that are not made at depth d, those with u < -d, integrated over d = 0..1 and divided by the mean over all, 1/3.
constexpr double kMirrorDepth = 3.0 / 16;
// Longest flight of a walker that is mirrored at the launch sphere, in launch radii: on this scale the sphere is
// nearly flat.
constexpr double kLongestFlight = 0.15;
// Largest drift of a flight, in its radii. Drift shifts the mean end of a flight by this much; its further effect on
// the distribution of the ends, which is neglected, is of the order of its square.
constexpr double kLargestDrift = 0.05;

static void Launch(Walk *walk);
static double LaunchRadiusOf(const Walk &walk);
static double FlightRadius(const Walk &walk);
static void Fly(double radius, Walk *walk);
static void MirrorAtLaunchSphere(Walk *walk);
static void Step(Walk *walk);
static void LookAround(Walk *walk);
static void ComeBack(double distance, Walk *walk);
static Vector DrawAcross(Vector n, Stream *draws);
static void CountSteps(double steps, Walk *walk);

void StartWalk(int number, int seen, double reach, SearchNotes *notes, Walk *walk)
{
    if (notes != nullptr)
        notes->Clear();
    walk->searcher = {number, seen, 0, notes};
    walk->draws = Stream(growthstate.seed, number);
    walk->reach = reach;
    walk->iscontained = !WalkersMayLeave() && growthstate.sourcetype != kSourceInfinity;
    walk->shortestflight =
        growthstate.walk == kWalkFlights ? kShortestFlight * growthstate.branchlength : HUGE_VAL;
    walk->partner = -1;
    walk->steps = 0;
    walk->launches = 0;
    walk->launched.clear();
    walk->left = 0;
}

bool ContinueWalk(int moves, Walk *walk)
{
    for (; moves > 0 && walk->partner < 0; moves--) {
        if (walk->left == 0)
            Launch(walk);
        const double radius = FlightRadius(*walk);
        if (radius >= walk->shortestflight)
            Fly(radius, walk);
        else
            Step(walk);
    }
    return walk->partner >= 0;
}

static void Launch(Walk *walk)
{
    walk->pos = LaunchPosition(growthstate.sourcetype, LaunchRadiusOf(*walk), &walk->draws);
    if (walk->launched.size() < kSeedRing)
        walk->launched.push_back(walk->pos);
    else
        walk->launched[walk->launches % kSeedRing] = walk->pos;
    walk->launches++;
    walk->left = kWalkerLife;
    walk->free = FreeRadius(walk->pos, &walk->searcher);
}

static double LaunchRadiusOf(const Walk &walk)
{
    return growthstate.launchscale * walk.reach;
}

// Radius of the longest flight there is room for: it stays within the free ball, drift included.
static double FlightRadius(const Walk &walk)
{
    double radius = walk.free;
    if (walk.iscontained)
        radius = std::min(radius, kLongestFlight * LaunchRadiusOf(walk));
    if (growthstate.bias > 0) {
        // A flight of radius r counts as many steps as its radius has branch lengths, squared, and drifts by slope r^2.
        const double slope = DriftLength() / (growthstate.branchlength * growthstate.branchlength);
        const double slowed = std::min(radius, kLargestDrift / slope);
        radius = std::min(slowed, walk.free / (1 + slope * slowed));
    }
    return radius;
}

// Makes a flight. A walker whose life ends during it is abandoned: it can have met no particle on the way.
static void Fly(double radius, Walk *walk)
{
    const double lengths = radius / growthstate.branchlength;
    const double steps = std::min(std::round(lengths * lengths), walk->iscontained ? walk->left : HUGE_VAL);
    CountSteps(steps, walk);
    DriftBy(steps * DriftLength(), walk->searcher.number, &walk->draws, &walk->pos);
    walk->pos = walk->pos + radius * DrawDirection(&walk->draws);
    if (walk->iscontained)
        MirrorAtLaunchSphere(walk);
    LookAround(walk);
}

// Puts a walker that is beyond the mirror at its image by inversion, which corrects for the curvature of the sphere.
static void MirrorAtLaunchSphere(Walk *walk)
{
    const double mirror = LaunchRadiusOf(*walk) - kMirrorDepth * growthstate.branchlength;
    const double squared = DotProduct(walk->pos, walk->pos);
    if (squared > mirror * mirror)
        walk->pos = (mirror * mirror / squared) * walk->pos;
}

// Takes a step, which may lead to the place of the particle.
static void Step(Walk *walk)
{
    CountSteps(1, walk);
    const Vector undo = walk->pos;
    const double freebefore = walk->free;
    const Vector moved = undo + DrawStep(&walk->draws);
    if (walk->iscontained && IsOutside(moved, LaunchRadiusOf(*walk)))
        return;
    walk->pos = moved;
    DriftBy(DriftLength(), walk->searcher.number, &walk->draws, &walk->pos);
    LookAround(walk);
    if (walk->free >= 0)
        return;
    const int partner = FindPartnerNear(walk->pos, &walk->searcher);
    if (partner < 0 || walk->draws.Uniform() > growthstate.stickiness * kPercent)
        return;
    if (IsRefused(walk->pos, partner)) {
        walk->pos = undo;
        walk->free = freebefore;
        return;
    }
    walk->partner = partner;
}

// Finds the free radius after a move. Beyond the aggregate it is at least the distance to its bounding sphere, less a
// branch length. A walker far outside comes back or is abandoned.
static void LookAround(Walk *walk)
{
    const double squared = DotProduct(walk->pos, walk->pos);
    if (!(squared > walk->reach * walk->reach)) {
        walk->free = FreeRadius(walk->pos, &walk->searcher);
        return;
    }
    const double distance = std::sqrt(squared);
    if (growthstate.sourcetype == kSourceInfinity) {
        ComeBack(distance, walk);
        return;
    }
    walk->free = distance - walk->reach + growthstate.branchlength;
    if (walk->iscontained)
        walk->free = std::max(walk->free, FreeRadius(walk->pos, &walk->searcher));
    else if (distance > growthstate.killingscale * LaunchRadiusOf(*walk))
        walk->left = 0;
}

// Moves a walker that is outside of the sphere of all places where it can stick to where Brownian motion first reaches
// that sphere, or ends its life if it never does. The chance to return is R/r, for the sphere's radius R and a distance
// r from its centre. The cosine u of the angle between both places, seen from the centre, follows from the exterior
// Poisson kernel, of which the density of u is proportional to (r^2 + R^2 - 2 r R u)^(-3/2): the inverse square root of
// that expression, 1 over the distance of both places, is uniform (J. D. Jackson, Classical Electrodynamics, section 2.6,
// has the kernel).
static void ComeBack(double distance, Walk *walk)
{
    const double r = distance, radius = walk->reach;
    if (!(r > radius)) { // rounded
        walk->free = FreeRadius(walk->pos, &walk->searcher);
        return;
    }
    const double x = walk->draws.Uniform() * r / radius; // uniform below 1 for the walkers that return
    if (x >= 1) {
        walk->left = 0;
        return;
    }
    const double farthest = 1 / (r + radius), nearest = 1 / (r - radius);
    const double s = farthest + x * (nearest - farthest);
    const double u = std::clamp((r * r + radius * radius - 1 / (s * s)) / (2 * r * radius), -1.0, 1.0);
    const Vector outward = (1 / r) * walk->pos;
    walk->pos = radius * (u * outward + std::sqrt(1 - u * u) * DrawAcross(outward, &walk->draws));
    walk->free = FreeRadius(walk->pos, &walk->searcher);
}

// Draws a uniformly random unit vector perpendicular to the unit vector n. The two axes across n are those of T. Duff et
// al., "Building an Orthonormal Basis, Revisited", J. Comput. Graph. Tech. 6 (2017) 1. The angle is twice that of a point
// in the unit disk.
static Vector DrawAcross(Vector n, Stream *draws)
{
    double a = 0, b = 0, square = 0;
    do {
        a = 2 * draws->Uniform() - 1;
        b = 2 * draws->Uniform() - 1;
        square = a * a + b * b;
    } while (square >= 1 || square == 0);
    const double sign = std::copysign(1.0, n.z);
    const double p = -1 / (sign + n.z), q = n.x * n.y * p;
    const Vector first = {1 + sign * n.x * n.x * p, sign * q, -sign * n.x};
    const Vector second = {q, sign + n.y * n.y * p, -n.y};
    return ((a * a - b * b) / square) * first + (2 * a * b / square) * second;
}

static void CountSteps(double steps, Walk *walk)
{
    walk->steps += static_cast<long>(std::min<double>(steps, kWalkerLife));
    if (walk->iscontained)
        walk->left -= static_cast<int>(steps);
}
