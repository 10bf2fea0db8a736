// The growth step of diffusion limited aggregation: one move of one random walker.
//
// After Witten and Sander, "Diffusion-Limited Aggregation, a Kinetic Critical Phenomenon", Phys. Rev. Lett.
// 47 (1981) 1400, off lattice and in three dimensions: the walker sticks where it first comes within a branch
// length of the aggregate. docs/growth-step.md follows the code and lists the draws in order.

#pragma once

// Launches a walker where one is due, moves it by one step, and makes it a new particle of cells where it
// sticks. Works on the global records and draws from drand48 and rand. When there is no memory for a new
// particle, growth stops (growthstate.running = 0), and the walker is back where it was before the step.
void IterateSystem();

// Repeats IterateSystem, only faster, until a particle has stuck or `most` steps are taken. Returns their number.
int IterateUntilStick(int most);
