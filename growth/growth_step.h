// The growth step of diffusion limited aggregation: one move of one random walker.
//
// After Witten and Sander, "Diffusion-Limited Aggregation, a Kinetic Critical Phenomenon", Phys. Rev. Lett.
// 47 (1981) 1400, off lattice and in three dimensions: the walker sticks where it first comes within a branch
// length of the aggregate. docs/growth-step.md follows the code and lists the draws in order.

#pragma once

// Launches a walker where one is due, moves it by one step, and makes it a new particle of cells where it
// sticks. Works on the global records and draws from drand48 and rand. When there is no memory for a new
// particle, growth stops (growthstate.running = 0) with a message on standard error, and the walker is back
// where it was before the step.
void IterateSystem();

// Takes steps until a particle has stuck or so many are taken, faster than one by one. Returns how many it took.
int IterateUntilStick(int most);

// Steps after which a walker that has not stuck is abandoned for a new one, where walkers cannot leave.
constexpr int kWalkerLife = 10000;

// Drops what growth remembers of the particles. Call after replacing the particles of cells rather than
// appending to them.
void ForgetAggregate();

// Number of calls of ForgetAggregate: it differs between an aggregate and the one before it.
unsigned AggregateNumber();

// Parts of the step that flights and flows share (growth/flights.h, growth/flows.h) -----------------------

// Raises growthstate.maxweight to a flow that a particle has now, if it is larger.
void RaiseLargestFlow(double flow);

// Counts so many steps of the walker, at most kWalkerLife.
void CountSteps(int steps);

// How far the walker drifts in a step.
double DriftLength();

// Moves the walker by the drift of so many steps.
void Drift(double steps);

// Whether the walker's life is over, or none has been launched yet.
bool IsLaunchDue();

// Radius of the sphere about the origin that holds all places where a walker can stick, with a branch length to spare.
double AggregateReach();

// Radius of the sphere about the origin on which walkers start.
double LaunchRadius();

// Whether walkers may leave the launch sphere and are abandoned far outside. Else they do not go beyond it and live
// kWalkerLife steps.
bool WalkersLeave();
