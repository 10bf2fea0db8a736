// Flights: a second way to walk, for aggregates of millions.
//
// Where no particle is near, a walker's steps add up to Brownian motion, which leaves a ball about its start at a
// uniformly random point of the sphere (M. E. Muller, "Some Continuous Monte Carlo Methods for the Dirichlet
// Problem", Ann. Math. Stat. 27 (1956) 569). So a walker with a free ball about it is set there in one move. Near
// the aggregate it takes the steps of growth/growth_step.h, and sticks, is refused and drifts by the same rules.
// docs/flights.md compares the aggregates of both.

#pragma once

// One move of the walker: a flight where there is room for one, else IterateSystem. A flight of r branch lengths
// counts as r^2 steps, which walk that far in the mean square, and drifts as they do. Rotation must be 0. The move
// follows from the run's records alone: a run that is resumed goes on as if it had never stopped.
void IterateFlights();

// Moves the walker by the run's own walk, steps or flights, until a particle has stuck or so many moves are made.
// Returns how many it made.
int WalkUntilStick(int most);
