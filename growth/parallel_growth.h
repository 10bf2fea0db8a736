// Growth by flights, on several threads: the aggregate is the same, bit for bit, whatever their number.
//
// Walks run ahead of their turn on the aggregate as it is, and note what they are told of it. Particles are added in
// the order of their numbers only. Where a particle that was added meanwhile has changed what a walk was told, the walk
// is repeated when its turn comes. docs/parallel-growth.md explains why nothing depends on time.

#pragma once

#include <climits>
#include <cmath>
#include <functional>

struct GrowthLimits {
    int particles = INT_MAX;    // growth stops at so many
    long steps = LONG_MAX;      // before the particle that would raise growthstate.steptotal above this
    long stallsteps = LONG_MAX; // and where no place is found for the next particle in so many steps
    double seconds = HUGE_VAL;  // GrowFlights returns after about this time
    // Unless empty, called by the calling thread every hundredth of a second or so, while no record changes; GrowFlights
    // returns when it is false. Flows may be deferred (growth/deferred_flows.h).
    std::function<bool()> poll = nullptr;
};

enum class GrowthStop {
    kPause,    // the time is over, or poll has returned false; growth can go on
    kReached,  // the number of particles or steps
    kStalled,  // no place was found for the next particle
    kNoMemory, // growthstate.running is 0
};

// Grows by flights until a limit is reached, on at most so many threads; on one where more would not help: in small
// aggregates, with an intersection range, and where rejections are printed. Only particles that are added change the
// records. Walks that are under way at the end are continued by the next call, unless something has changed on which
// they depend.
GrowthStop GrowFlights(const GrowthLimits &limits, int threads);

// For tests: of walks made ahead of their turn, those whose number is a multiple of this are repeated whether or not
// they have to be; 0: none of them.
extern int repeatedwalks;

// Number of particles below which one thread is used; tests lower it.
extern int fewparticles;
