// The floor under the cost of a growth step: the draws, by the C library, and the arithmetic that a walker's
// step needs for the current growth parameters (move, containment, drift, rotation), with no search and no
// sticking.

#pragma once

// Takes `steps` steps of a walker within the current launch radius. Returns the seconds that they took.
double TimeFloor(long steps);

// Seconds that so many steps of the chain take: the operations of the default step that wait for each other (move,
// distance from the root, division, drift), along directions that are there beforehand.
double TimeChain(long steps);
