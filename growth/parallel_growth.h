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
    int particles = INT_MAX;    // stop when there are this many particles
    long steps = LONG_MAX;      // stop before a particle that would raise growthstate.steptotal above this
    long stallsteps = LONG_MAX; // give up if the walk of the next particle has taken this many steps
    double seconds = HUGE_VAL;  // return after about this time
    // Unless empty, the calling thread calls this every hundredth of a second or so, and returns when it is false. No
    // particle is added meanwhile, but flows may be: it must not read them.
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
