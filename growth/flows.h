// Flows: what each particle that sticks adds along the path to its root, and the largest of them.

#pragma once

// Adds the flow that a particle brings which sticks to particle `partner`: 1/n along the path of n particles from
// it to its root. The walk that counts n stops at index 0 and the walk that adds passes through it (kept): paths
// that end in root 0 get a slightly larger share. Returns the largest flow on the path.
double AddFlow(int partner);

// The same without the path tables, for lack of memory.
double AddFlowWithoutTables(int partner);

// Extends the tables of the paths to the first `count` particles, with each particle's distant ancestor where that is
// asked for. Returns false where memory does not suffice.
bool ExtendPathTables(int count, bool withancestors);

// Particles that the flow of a new one counts on the path from this particle to its root. It must be in the tables.
int PathLength(int particle);

// Drops the path tables, and what is known of the largest flow.
void ForgetPaths();

// Whether growthstate.maxweight is known to be the largest flow of the first `count` particles.
bool IsLargestFlowKnown(int count);

// Raises growthstate.maxweight to the largest flow of any particle, where a new one has come: only those on its path,
// of which the largest is given, can have risen, where the largest was known before.
void UpdateLargestFlow(double newest);

// Raises growthstate.maxweight to a flow that a particle has now, if it is larger.
void RaiseLargestFlow(double flow);
