// What the benchmarks share: clocks, and the default aggregate.

#pragma once

// Seconds of a steady clock.
double Now();

// Seconds that this thread has had of the processor: others at work on the machine do not count.
double ProcessorSeconds();

// Grows the default aggregate from its start to that many particles, and pauses growth.
void GrowDefault(int particles);

// Moves walkers as the idle driver does, a hundred times at a time, until there are `particles` particles or `most`
// moves have been made; returns how many.
long GrowOn(int particles, long most);
