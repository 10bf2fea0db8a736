#include <cerrno>
#include <cmath>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

#include "archive/aggregate_file.h"
#include "archive/format.h"
#include "archive/tables.h"
#include "base/array.h"
#include "base/memory.h"
#include "growth/parameters.h"
#include "search/neighbour_search.h"

static Fault ReadAll(const std::string &path, StoredAggregate *stored);
static void ReadContent(hid_t file, StoredAggregate *stored);
static void ReadParameters(hid_t file, StoredAggregate *stored);
static void ReadParticles(hid_t file, StoredAggregate *stored);
static void ReadSurfaceAndRoots(hid_t file, StoredAggregate *stored);
static void ReadWalk(hid_t file, StoredAggregate *stored);
static void ReadCamera(hid_t file, StoredAggregate *stored);
static bool CanBe(const Parameter &parameter, double value);
static std::string AllowedNumbers(const Parameter &parameter);
static std::string NumberText(double value);

Fault ReadAggregate(const std::string &path, StoredAggregate *stored)
{
    SilenceLibrary();
    try {
        return ReadAll(path, stored);
    } catch (const std::bad_alloc &) {
        return {kMemoryFault, kNoMemory};
    }
}

static Fault ReadAll(const std::string &path, StoredAggregate *stored)
{
    const auto bad = [&](const std::string &why) { return Fault(kFileFault, path + ": " + why); };
    struct stat about = {};
    if (stat(path.c_str(), &about) != 0 || access(path.c_str(), R_OK) != 0)
        return bad(std::string("cannot be read: ") + strerror(errno));
    if (!S_ISREG(about.st_mode))
        return bad("not an aggregate file");
    try {
        const Hdf5Object access(H5Pcreate(H5P_FILE_ACCESS), H5Pclose, "not enough memory");
        H5Pset_file_locking(access, false, true); // some shared disks refuse locks
        if (H5Fis_hdf5(path.c_str()) <= 0)
            return bad("not an aggregate file, or truncated");
        const Hdf5Object file(H5Fopen(path.c_str(), H5F_ACC_RDONLY, access), H5Fclose, "not a whole file");
        ReadContent(file, stored);
        return {};
    } catch (const TooLarge &fault) {
        return {kMemoryFault, path + ": " + fault.what()};
    } catch (const Hdf5Fault &fault) {
        return bad(fault.what());
    }
}

static void ReadContent(hid_t file, StoredAggregate *stored)
{
    Require(H5Aexists(file, "format") > 0 && ReadText(file, "format") == kFormatName,
            "an HDF5 file, but of another program");
    const int version = ReadNumber<int>(file, "format_version");
    Require(version == kFormatVersion, "written by another version of the program, in format " +
                                           std::to_string(version) + "; this one reads format " +
                                           std::to_string(kFormatVersion));
    const auto steps = ReadNumber<uint64_t>(file, "steps");
    stored->run.seconds = ReadNumber<double>(file, "seconds");
    Require(stored->run.seconds >= 0, "seconds is out of range");
    ReadParameters(file, stored);
    ReadParticles(file, stored);
    CheckParticles(stored->particles.get(), stored->count);
    Require(ReadNumber<int>(file, "particles") == stored->count,
            "particles is not the length of the table of positions");
    const int rootcount = CountRoots(stored->particles.get(), stored->count);
    const auto least = static_cast<uint64_t>(stored->count - rootcount); // one for each particle
    Require(steps >= least && steps <= LONG_MAX, "steps is " + std::to_string(steps) +
                                                     "; allowed: " + std::to_string(least) + " to " +
                                                     std::to_string(LONG_MAX));
    stored->state.steptotal = static_cast<long>(steps);
    // A single root is allowed whatever roots.count is: the distribution "Origin" has only one.
    const double wantedroots = stored->values[ParameterIndex(&growthstate.nroots)];
    Require(rootcount <= 1 || wantedroots >= rootcount, "roots/count is " + NumberText(wantedroots) +
                                                            "; allowed: " + std::to_string(rootcount) +
                                                            " and above");
    ReadSurfaceAndRoots(file, stored);
    ReadWalk(file, stored);
    ReadCamera(file, stored);
}

// Reads all parameters into stored->values; throws if a value is not allowed.
static void ReadParameters(hid_t file, StoredAggregate *stored)
{
    const Hdf5Object parameters = OpenGroup(file, "parameters");
    for (const Parameter &parameter : Parameters()) {
        const Hdf5Object group = OpenGroup(parameters, parameter.group);
        double value = 0;
        if (std::holds_alternative<int *>(parameter.field))
            value = ReadNumber<int>(group, parameter.key);
        else
            value = ReadNumber<double>(group, parameter.key);
        Require(CanBe(parameter, value), std::string(parameter.group) + "/" + parameter.key + " is " +
                                             NumberText(value) + "; allowed: " + AllowedNumbers(parameter));
        stored->values.push_back(value);
    }
    if (const auto contradiction = FindContradiction(stored->values))
        throw Hdf5Fault(contradiction->reason);
}

static bool CanBe(const Parameter &parameter, double value)
{
    if (parameter.name == nullptr)
        return IsAllowed(parameter, value);
    if (&parameter == &ParameterOf(&options.surfacemode) && value == 0)
        return true; // a box count sets 0 to hide the surface
    return value >= parameter.low && value <= parameter.high &&
           parameter.name(static_cast<int>(value)) != nullptr;
}

static std::string AllowedNumbers(const Parameter &parameter)
{
    if (parameter.name == nullptr)
        return NumberText(parameter.low) +
               (std::isinf(parameter.high) ? " and above" : " to " + NumberText(parameter.high));
    std::string numbers;
    for (int code = static_cast<int>(parameter.low); code <= static_cast<int>(parameter.high); code++)
        if (parameter.name(code) != nullptr)
            numbers.append(numbers.empty() ? "" : ", ").append(std::to_string(code));
    return numbers;
}

static std::string NumberText(double value)
{
    char text[32];
    snprintf(text, sizeof text, "%.10g", value);
    return text;
}

// Memory for the rows of a table. Throws TooLarge if it is not available: the system may promise more than it has.
template<typename T>
static std::unique_ptr<T[], FreeMemory> Allocate(hsize_t count, const char *name)
{
    if (count > AvailableMemory() / sizeof(T))
        throw TooLarge("memory does not hold the " + std::to_string(count) + " rows of " + name);
    T *array = nullptr;
    if (!ResizeArray(&array, count))
        throw std::bad_alloc();
    return std::unique_ptr<T[], FreeMemory>(array);
}

static void ReadParticles(hid_t file, StoredAggregate *stored)
{
    const hsize_t count = CountRows<double>(file, "particles/position", {3});
    Require(CountRows<double>(file, "particles/flow", {}) == count &&
                CountRows<int>(file, "particles/parent", {}) == count,
            "particles: the tables are not of the same length");
    stored->particles = Allocate<Particle>(count, "particles/position");
    stored->count = static_cast<int>(count);
    Particle *particles = stored->particles.get();
    ReadTable<double>(file, "particles/position", count, {3}, [=](hsize_t i, const double *numbers) {
        particles[i] = {GetVector(numbers), 0, -1, 0};
    });
    ReadTable<double>(file, "particles/flow", count, {},
                      [=](hsize_t i, const double *number) { particles[i].weight = *number; });
    ReadTable<int>(file, "particles/parent", count, {},
                   [=](hsize_t i, const int *number) { particles[i].parent = *number; });
}

static void ReadSurfaceAndRoots(hid_t file, StoredAggregate *stored)
{
    const hsize_t faces = CountRows<double>(file, "surface/faces", {3, 3});
    stored->faces = Allocate<Triangle>(faces, "surface/faces");
    stored->facecount = static_cast<int>(faces);
    Triangle *triangles = stored->faces.get();
    ReadTable<double>(file, "surface/faces", faces, {3, 3}, [=](hsize_t i, const double *numbers) {
        triangles[i] = {};
        for (hsize_t corner = 0; corner < 3; corner++)
            triangles[i].p[corner] = GetVector(numbers + 3 * corner);
    });
    CheckFaces(triangles, stored->facecount);
    snprintf(stored->state.surfacename, sizeof stored->state.surfacename, "%s",
             ReadText(OpenGroup(file, "surface"), "name").c_str());

    const hsize_t count = CountRows<double>(file, "roots", {3});
    Require(static_cast<int>(count) == CountRoots(stored->particles.get(), stored->count),
            "roots: not those of the particles");
    stored->roots = Allocate<Vector>(count, "roots");
    Vector *positions = stored->roots.get();
    ReadTable<double>(file, "roots", count, {3},
                      [=](hsize_t i, const double *numbers) { positions[i] = GetVector(numbers); });
    for (hsize_t i = 0; i < count; i++)
        Require(VectorLength(positions[i], stored->particles[i].p) == 0, "roots: not those of the particles");
    snprintf(stored->state.rootname, sizeof stored->state.rootname, "%s",
             ReadText(OpenTable(file, "roots"), "name").c_str());
}

static void ReadWalk(hid_t file, StoredAggregate *stored)
{
    const Hdf5Object walk = OpenGroup(file, "walk");
    Require(CountRows<double>(walk, "launch_positions", {3}) == kSeedRing,
            "walk/launch_positions has the wrong number of rows");
    stored->launches.resize(kSeedRing);
    ReadTable<double>(walk, "launch_positions", kSeedRing, {3},
                      [=](hsize_t i, const double *numbers) { stored->launches[i] = GetVector(numbers); });
    for (const Vector launch : stored->launches)
        Require(!std::isnan(Modulus(launch)), "walk/launch_positions: a number is missing");
    GrowthState &state = stored->state;
    state.pos = ReadVectorAttribute(walk, "position");
    state.stepcount = ReadNumber<int>(walk, "steps_since_particle");
    state.radius = ReadNumber<double>(walk, "radius");
    state.maxweight = ReadNumber<double>(walk, "largest_flow");
    stored->launchcount = ReadNumber<int>(walk, "launches");
    Require(state.stepcount >= 0 && stored->launchcount >= 0 && state.radius >= 0 && state.maxweight >= 0 &&
                !std::isnan(Modulus(state.pos)),
            "walk: a number is out of range");
    stored->generators.congruence = ReadNumber<uint64_t>(walk, "drand48");
    Require(stored->generators.congruence >> 48 == 0, "walk/drand48 is out of range");
    ReadAttribute(walk, "rand", stored->generators.words, kFeedbackWords);
    stored->generators.oldest = 0;
}

static void ReadCamera(hid_t file, StoredAggregate *stored)
{
    const Hdf5Object group = OpenGroup(file, "camera");
    Camera &view = stored->run.view;
    view.vp = ReadVectorAttribute(group, "position");
    view.vd = ReadVectorAttribute(group, "direction");
    view.vu = ReadVectorAttribute(group, "up");
    view.pr = ReadVectorAttribute(group, "rotation_point");
    view.aperture = ReadNumber<double>(group, "aperture");
    stored->run.fromwindow = ReadNumber<int>(group, "from_window") != 0;
    for (const Vector v : {view.vp, view.vd, view.vu, view.pr})
        Require(std::isfinite(Modulus(v)), "camera: a number is out of range");
    Require(view.aperture > 0 && view.aperture < 180, "camera/aperture is out of range");
}

void CheckParticles(const Particle *particles, int count)
{
    const int rootcount = CountRoots(particles, count);
    for (int i = 0; i < count; i++) {
        const Particle &particle = particles[i];
        const auto require = [=](bool holds, const char *otherwise) {
            if (!holds)
                throw Hdf5Fault("particle " + std::to_string(i) + otherwise);
        };
        require(std::isfinite(Modulus(particle.p)), ": position is not finite");
        require(particle.weight >= 0 && std::isfinite(particle.weight), " has a flow that is out of range");
        require(i < rootcount || particle.parent >= 0, " is a root, or its parent is out of range");
        require(particle.parent < i, " has a parent that does not come before it");
        require(i < rootcount || VectorLength(particle.p, particles[particle.parent].p) <= kFarthestPartner,
                " is farther from its parent than any particle sticks");
    }
}

void CheckFaces(const Triangle *faces, int count)
{
    for (int i = 0; i < count; i++)
        for (const Vector corner : faces[i].p)
            Require(std::isfinite(Modulus(corner)), "surface/faces: a corner is not a finite position");
}

int CountRoots(const Particle *particles, int count)
{
    int rootcount = 0;
    while (rootcount < count && particles[rootcount].parent == -1)
        rootcount++;
    return rootcount;
}
