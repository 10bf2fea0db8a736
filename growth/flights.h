// Flights: a second way to walk, for aggregates of millions.
//
// Where no particle is near, a walker's steps add up to Brownian motion, which leaves a ball about its start at a
// uniformly random point of the sphere (M. E. Muller, "Some Continuous Monte Carlo Methods for the Dirichlet
// Problem", Ann. Math. Stat. 27 (1956) 569). So a walker with a free ball about it moves to its surface at once. Near
// the aggregate it takes steps, and sticks, is refused and drifts by the rules of growth/growth_step.h.
// docs/flights.md compares the aggregates of both walks.

#pragma once

#include <vector>

#include "geom/vector.h"
#include "growth/stream.h"
#include "search/neighbour_search.h"

// The search for the place of one particle: walkers are launched, one after the other, until one sticks. What it finds
// follows from the seed, the particle's number and the particles before it. Rotation must be 0.
struct Walk {
    Searcher searcher;     // with the number of the particle
    Stream draws;          // of the particle
    double reach;          // AggregateReach() when the walk started
    bool iscontained;      // walkers stay within the launch sphere, and live kWalkerLife steps
    double shortestflight; // with less room the walker takes a step; infinite for growth.walk "steps"
    int partner;           // the particle that the walker at pos sticks to; -1 while none is found
    long steps;            // of all walkers; a flight of r branch lengths counts as r^2, at most kWalkerLife
    long launches;         // walkers
    std::vector<Vector> launched; // the latest launch positions, in a ring like seeds

    // The present walker
    Vector pos;
    double free; // radius of a ball about pos in which it finds no partner; below 0 if none is known
    int left;    // steps left of its life; 0: the next one has to be launched
};

// Starts the search for particle `number` among the first `seen` particles, at most `number`; `reach` is AggregateReach()
// with those. The search must have been prepared (PrepareSearch). What the walk is told is recorded in `notes`, unless
// nullptr.
void StartWalk(int number, int seen, double reach, SearchNotes *notes, Walk *walk);

// Makes at most `moves` moves, flights or steps. Returns whether the walk has found a place.
bool ContinueWalk(int moves, Walk *walk);
