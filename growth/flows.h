// Flows: what each particle that sticks adds along the path to its root, and the largest of them.

#pragma once

// Adds the flow of a particle that sticks to particle `partner`: 1/n to each particle from `partner` to its root,
// where n is the number of particles from the new one to the root. The walk that counts n stops at index 0 and the
// walk that adds passes through it (kept): paths that end in root 0 get a slightly larger share. Returns the largest
// flow on the path.
double AddFlow(int partner);

// The same without the path tables, for when memory does not hold them.
double AddFlowWithoutTables(int partner);

// Extends the path tables to the first `count` particles; the table of ancestors only if `withancestors`. Returns
// false if memory does not suffice.
bool ExtendPathTables(int count, bool withancestors);

// The n of AddFlow for a new particle that sticks to this one, which must be in the path tables.
int PathLength(int particle);

// Discards the path tables and what is known of the largest flow.
void ForgetPaths();

// Whether growthstate.maxweight is known to be the largest flow of the first `count` particles.
bool IsLargestFlowKnown(int count);

// Raises growthstate.maxweight to the largest flow of any particle after a particle was added. `newest` is the
// largest flow on its path; if the largest flow was known before, no other flow can exceed it.
void UpdateLargestFlow(double newest);

// Raises growthstate.maxweight to the new flow of a particle, if that is larger.
void RaiseLargestFlow(double flow);

// Raises growthstate.maxweight to the largest flow of any particle, unless that is known.
void FindLargestFlow();

// States that growthstate.maxweight is still the largest flow after particles without flow were added.
void KeepLargestFlow();
