// Aggregate files: the state of a run in one HDF5 file (docs/file-formats.md). A run that is read and continued
// grows, bit for bit, as if it had never stopped.

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

// What is stored of a run besides the global records of growth/state.h and surface/surface.h
struct RunRecord {
    double seconds = 0;      // growth time, summed over resumptions
    bool fromwindow = false; // saved from a window, with its user's camera; otherwise the home camera
    Camera view = {};        // the camera
};

// Writes the global records and `run` to a file. An existing file is replaced only once the new one is complete.
Fault WriteAggregate(const std::string &path, const RunRecord &run);

struct FreeMemory {
    void operator()(void *memory) const { free(memory); }
};

// A run read from a file, not yet in the global records
struct StoredAggregate {
    std::unique_ptr<Particle[], FreeMemory> particles;
    int count = 0;
    std::unique_ptr<Vector[], FreeMemory> roots; // the positions read from a seed file; nullptr without one
    std::unique_ptr<Triangle[], FreeMemory> faces;
    int facecount = 0;
    std::vector<double> values; // of Parameters(), row by row
    GrowthState state = {};     // walker, names, radius and counts; the parameters are in `values`
    std::vector<Vector> launches;
    int launchcount = 0;
    GeneratorState generators = {};
    RunRecord run;
};

// Reads a file. A file that is damaged, of another program, or of a newer format is a kFileFault.
Fault ReadAggregate(const std::string &path, StoredAggregate *stored);

// Replaces the run in the global records by a stored one.
void ResumeRun(StoredAggregate stored);

// Returns, in words, the first parameter, surface or roots in which a stored run differs from the run in the global
// records; empty if it is the same run. Parameters of drawing and slicing are not compared.
std::string DifferenceFromRun(const StoredAggregate &stored);
