// Roots: where the aggregate starts, and how a run starts or starts again.

#pragma once

// Starts a run: the walker's count, the flow, the radius, the recent launches and the statistics' time step
// go back to their start, both random generators are seeded with growthstate.seed, growth runs, and the
// aggregate is cut back to the roots that are placed (at most growthstate.nroots of them), which keep their
// weight. The first call of the program also gives every growth parameter its default and places the root.
void InitialiseGrowth();

// Places the roots of the distribution growthstate.roottype in cells, writes its name to growthstate.rootname
// and seeds both random generators with growthstate.seed. Random roots are drawn before that, with the
// generator as it is. kRootOrigin places a single root whatever nroots says; a type above 9 places none; 9
// and anything below 1 place like kRootSpherical, a cube of side rootrange (kept; the rings have radius
// rootrange). Returns 1, or 0 with everything as it was when memory does not hold the roots.
int ResetSeeds();

// Starts a run from newly placed roots, as InitialiseGrowth and then ResetSeeds do. Returns 1, or 0 with
// everything as it was when memory does not hold the roots.
int RestartFromRoots();

// Whether available memory holds the roots that growthstate.roottype and growthstate.nroots ask for.
bool MemoryHoldsRoots();

// Menu callback: records distribution id and its name; the next ResetSeeds places roots accordingly.
void HandleRootMenu(int id);

// How the reading of a seed file ended.
enum SeedFileResult {
    kSeedFileRead,        // the file's positions are the roots, and a run has started from them
    kSeedFileUnopened,    // not opened; nothing changed
    kSeedFileEmpty,       // no position in it; a run has started from one root at the origin
    kSeedFileOutOfMemory, // memory does not hold its roots; nothing changed
};

// Reads root positions from a text file: x y z per record, separated by white space; the first record that is
// not three numbers ends the reading. growthstate.rootname receives the path, truncated to fit.
SeedFileResult ReadSeedFile(const char *path);
