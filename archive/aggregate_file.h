// Aggregate files: a run as it stands, kept in one HDF5 file (docs/file-formats.md). A run that is read goes on
// as if it had never stopped, to the last bit.

#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/fault.h"
#include "growth/generators.h"
#include "growth/state.h"
#include "surface/surface.h"

constexpr const char *kAggregateExtension = ".sarkelo.h5";

// What a run has besides the global records.
struct RunRecord {
    double seconds = 0;      // of growth, summed over resumptions
    bool fromwindow = false; // the camera was turned in a window, else it is at home
    Camera view = {};        // where the aggregate is looked at from
};

// Writes the global records, beside the file first. The earlier file stays
// where the new one cannot be written whole.
Fault WriteAggregate(const std::string &path, const RunRecord &run);

struct FreeMemory {
    void operator()(void *memory) const { free(memory); }
};

// A run as it was read, outside of the global records.
struct StoredAggregate {
    std::unique_ptr<Particle[], FreeMemory> particles;
    int count = 0;
    std::unique_ptr<Vector[], FreeMemory> roots; // the positions read from a seed file; nullptr without one
    std::unique_ptr<Triangle[], FreeMemory> faces;
    int facecount = 0;
    std::vector<double> values; // of Parameters(), row by row
    GrowthState state = {};     // walker, names, radius and the like; parameters stand in values
    std::vector<Vector> launches;
    int launchcount = 0;
    GeneratorState generators = {};
    RunRecord run;
};

// Reads a file. The fault of one that is damaged, of another program, or of a newer format is a kFileFault.
Fault ReadAggregate(const std::string &path, StoredAggregate *stored);

// Makes a stored run that of the global records, which then hold it.
void ResumeRun(StoredAggregate stored);

// Which parameter, surface or roots of a stored run differ from those of the run in the global records, in
// words; empty where it is the same run. How it is drawn does not matter.
std::string DifferenceFromRun(const StoredAggregate &stored);
