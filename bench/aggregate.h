// What the benchmarks share: a clock, and the default aggregate.

#pragma once

// Seconds of a steady clock.
double Now();

// Grows the default aggregate from its start to that many particles, and pauses growth.
void GrowDefault(int particles);

// Takes steps as the idle driver does, a hundred at a time, until there are `particles` particles or `most`
// steps have been taken; returns how many.
long GrowOn(int particles, long most);
