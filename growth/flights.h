// Flights: a second way to walk, for aggregates of millions.
//
// Where no particle is near, a walker's steps add up to Brownian motion, which leaves a ball about its start at a
// uniformly random point of the sphere (M. E. Muller, "Some Continuous Monte Carlo Methods for the Dirichlet
// Problem", Ann. Math. Stat. 27 (1956) 569). So a walker with a free ball about it moves to its surface at once. Near
// the aggregate it takes the steps of growth/growth_step.h, and sticks, is refused and drifts by the same rules.
// docs/flights.md compares the aggregates of both walks.

#pragma once

// One move of the walker: a flight where there is room for one, else IterateSystem. A flight of r branch lengths
// counts as r^2 steps, which walk that far in the mean square, and drifts as they do. Rotation must be 0. The move
// depends on the run's records alone, so a resumed run continues as if it had never stopped.
void IterateFlights();

// Moves the walker, by growthstate.walk in steps or flights, until a particle has stuck or `most` moves are made.
// Returns the number of moves.
int WalkUntilStick(int most);
