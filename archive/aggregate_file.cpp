#include "archive/aggregate_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstring>
#include <functional>

#include <sys/stat.h>
#include <unistd.h>

#include "archive/hdf5.h"
#include "export/output_file.h"
#include "growth/array.h"
#include "growth/growth_step.h"
#include "growth/memory.h"
#include "growth/neighbour_search.h"
#include "growth/parameters.h"

constexpr const char *kFormatName = "sarkelo aggregate";
constexpr int kFormatVersion = 1;
// Rows of a table that are compressed and checksummed together, and converted together.
constexpr hsize_t kChunkRows = 16384;
constexpr unsigned kDeflateLevel = 1;
// Bytes by which the file grows in memory before it is written.
constexpr std::size_t kImageIncrement = std::size_t{1} << 20;
// Short enough to be told without memory.
constexpr const char *kNoMemory = "out of memory";

namespace
{
// A file as it is made in memory: a disk that is full cannot come between it and its end.
struct Image {
    void *bytes = nullptr; // the library's, and ours once the file is closed
    hsize_t size = 0;

    Image() = default;
    ~Image() { free(bytes); }
    Image(const Image &) = delete;
    Image &operator=(const Image &) = delete;
};
} // namespace

static void WriteContent(hid_t file, const RunRecord &run);
static void WriteParameters(hid_t file);
static void WriteParticles(hid_t file);
static void WriteWalk(hid_t file);
static void WriteCamera(hid_t file, const RunRecord &run);
static Fault WriteAll(const std::string &path, const RunRecord &run);
static void MakeImage(const RunRecord &run, Image *image);
static int SaveImage(const Image &image, const std::string &path);
static GeneratorState TakeGenerators();

static Fault ReadAll(const std::string &path, StoredAggregate *stored);
static void ReadContent(hid_t file, StoredAggregate *stored);
static void ReadParameters(hid_t file, StoredAggregate *stored);
static void ReadParticles(hid_t file, StoredAggregate *stored);
static void ReadSurfaceAndRoots(hid_t file, StoredAggregate *stored);
static void ReadWalk(hid_t file, StoredAggregate *stored);
static void ReadCamera(hid_t file, StoredAggregate *stored);
static void CheckParticles(const Particle *particles, int count);
static int CountRoots(const Particle *particles, int count);

// Tables --------------------------------------------------------------------------------------------------

static hsize_t RowLength(std::span<const hsize_t> row)
{
    hsize_t length = 1;
    for (const hsize_t size : row)
        length *= size;
    return length;
}

// Writes a table of `count` rows of the given shape. fill(i, numbers) sets the numbers of row i.
template<typename T, typename Fill>
static void WriteTable(hid_t file, const char *name, hsize_t count, std::initializer_list<hsize_t> row,
                       Fill fill)
{
    std::vector<hsize_t> shape = {count};
    shape.insert(shape.end(), row.begin(), row.end());
    const int rank = static_cast<int>(shape.size());
    const hsize_t length = RowLength(row);
    const Hdf5Object space(H5Screate_simple(rank, shape.data(), nullptr), H5Sclose, name);
    const Hdf5Object settings(H5Pcreate(H5P_DATASET_CREATE), H5Pclose, name);
    Require(H5Pset_obj_track_times(settings, false) >= 0, name);
    const hsize_t chunk = std::min(count, kChunkRows);
    if (count > 0) {
        std::vector<hsize_t> part = shape;
        part[0] = chunk;
        Require(H5Pset_chunk(settings, rank, part.data()) >= 0 && H5Pset_shuffle(settings) >= 0 &&
                    H5Pset_deflate(settings, kDeflateLevel) >= 0 && H5Pset_fletcher32(settings) >= 0,
                name);
    }
    const Hdf5Object links(H5Pcreate(H5P_LINK_CREATE), H5Pclose, name);
    Require(H5Pset_create_intermediate_group(links, 1) >= 0, name);
    const Hdf5Object table(H5Dcreate2(file, name, FileType<T>(), space, links, settings, H5P_DEFAULT),
                           H5Dclose, name);
    std::vector<T> numbers(chunk * length);
    std::vector<hsize_t> start(shape.size());
    for (hsize_t first = 0; first < count; first += chunk) {
        shape[0] = std::min(chunk, count - first);
        start[0] = first;
        for (hsize_t i = 0; i < shape[0]; i++)
            fill(first + i, &numbers[i * length]);
        const Hdf5Object memory(H5Screate_simple(rank, shape.data(), nullptr), H5Sclose, name);
        Require(H5Sselect_hyperslab(space, H5S_SELECT_SET, start.data(), nullptr, shape.data(), nullptr) >= 0,
                name);
        Require(H5Dwrite(table, MemoryType<T>(), memory, space, H5P_DEFAULT, numbers.data()) >= 0, name);
    }
}

static Hdf5Object OpenTable(hid_t file, const char *name)
{
    return {H5Dopen2(file, name, H5P_DEFAULT), H5Dclose, name, " is missing"};
}

// Number of rows of a table that has rows of the given shape; throws where it has not.
template<typename T>
static hsize_t CountRows(hid_t file, const char *name, std::initializer_list<hsize_t> row)
{
    const std::string wrong = std::string(name) + " is no such table";
    const Hdf5Object table = OpenTable(file, name);
    const Hdf5Object type(H5Dget_type(table), H5Tclose, wrong);
    const Hdf5Object space(H5Dget_space(table), H5Sclose, wrong);
    std::array<hsize_t, 1 + 2> shape = {};
    Require(H5Tget_class(type) == H5Tget_class(FileType<T>()) && H5Tget_size(type) <= sizeof(T) &&
                H5Sget_simple_extent_ndims(space) == static_cast<int>(1 + row.size()),
            wrong);
    Require(H5Sget_simple_extent_dims(space, shape.data(), nullptr) >= 0, wrong);
    Require(std::equal(row.begin(), row.end(), shape.begin() + 1), wrong);
    Require(shape[0] <= INT_MAX, wrong);
    return shape[0];
}

// Calls take(i, numbers) for each row of a table.
template<typename T, typename Take>
static void ReadTable(hid_t file, const char *name, hsize_t count, std::initializer_list<hsize_t> row,
                      Take take)
{
    const std::string damaged = std::string(name) + " is damaged";
    const Hdf5Object table = OpenTable(file, name);
    const Hdf5Object space(H5Dget_space(table), H5Sclose, damaged);
    std::vector<hsize_t> shape = {count};
    shape.insert(shape.end(), row.begin(), row.end());
    const int rank = static_cast<int>(shape.size());
    const hsize_t length = RowLength(row);
    const hsize_t chunk = std::min(count, kChunkRows);
    std::vector<T> numbers(chunk * length);
    std::vector<hsize_t> start(shape.size());
    for (hsize_t first = 0; first < count; first += chunk) {
        shape[0] = std::min(chunk, count - first);
        start[0] = first;
        const Hdf5Object memory(H5Screate_simple(rank, shape.data(), nullptr), H5Sclose, damaged);
        Require(H5Sselect_hyperslab(space, H5S_SELECT_SET, start.data(), nullptr, shape.data(), nullptr) >= 0,
                damaged);
        Require(H5Dread(table, MemoryType<T>(), memory, space, H5P_DEFAULT, numbers.data()) >= 0, damaged);
        for (hsize_t i = 0; i < shape[0]; i++)
            take(first + i, &numbers[i * length]);
    }
}

static void PutVector(Vector v, double *numbers)
{
    numbers[0] = v.x;
    numbers[1] = v.y;
    numbers[2] = v.z;
}

static Vector GetVector(const double *numbers)
{
    return {numbers[0], numbers[1], numbers[2]};
}

static void WriteVectorAttribute(hid_t object, const char *name, Vector v)
{
    double numbers[3];
    PutVector(v, numbers);
    WriteAttribute(object, name, numbers, 3);
}

static Vector ReadVectorAttribute(hid_t object, const char *name)
{
    double numbers[3];
    ReadAttribute(object, name, numbers, 3);
    return GetVector(numbers);
}

static Hdf5Object CreateGroup(hid_t parent, const std::string &name)
{
    return {H5Gcreate2(parent, name.c_str(), H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT), H5Gclose, name};
}

static Hdf5Object OpenGroup(hid_t parent, const std::string &name)
{
    return {H5Gopen2(parent, name.c_str(), H5P_DEFAULT), H5Gclose, name, " is missing"};
}

static bool IsMissing(hid_t file, const char *name)
{
    return H5Lexists(file, name, H5P_DEFAULT) <= 0;
}

static void SilenceLibrary()
{
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
}

// Writing -------------------------------------------------------------------------------------------------

Fault WriteAggregate(const std::string &path, const RunRecord &run)
{
    SilenceLibrary();
    try {
        return WriteAll(path, run);
    } catch (const std::bad_alloc &) {
        return {kMemoryFault, kNoMemory};
    }
}

static Fault WriteAll(const std::string &path, const RunRecord &run)
{
    const auto cannot = [&](FaultKind kind, const std::string &why) {
        return Fault(kind, "Cannot write \"" + path + "\": " + why);
    };
    try {
        CheckParticles(cells, ncells);
    } catch (const Hdf5Fault &fault) {
        return cannot(kFileFault, fault.what());
    }
    FreeNeighbourIndex(); // the image takes its place in memory
    Image image;
    try {
        MakeImage(run, &image);
    } catch (const Hdf5Fault &fault) {
        return cannot(kMemoryFault, std::string("not enough memory for ") + fault.what());
    }
    if (image.bytes == nullptr)
        return cannot(kMemoryFault, "not enough memory");
    const int reason = SaveImage(image, path);
    return reason == 0 ? Fault() : cannot(kFileFault, strerror(reason));
}

// The library hands the bytes of a file over where it would free them.
static herr_t KeepImage(void *bytes, H5FD_file_image_op_t, void *image)
{
    static_cast<Image *>(image)->bytes = bytes;
    return 0;
}

static void MakeImage(const RunRecord &run, Image *image)
{
    const char *about = "the file";
    H5FD_file_image_callbacks_t callbacks = {};
    callbacks.image_free = KeepImage;
    callbacks.udata_copy = [](void *udata) { return udata; };
    callbacks.udata_free = [](void *) -> herr_t { return 0; };
    callbacks.udata = image;
    const Hdf5Object access(H5Pcreate(H5P_FILE_ACCESS), H5Pclose, about);
    // Metadata with checksums, indexes of chunks included.
    Require(H5Pset_libver_bounds(access, H5F_LIBVER_V110, H5F_LIBVER_V110) >= 0, about);
    Require(H5Pset_fapl_core(access, kImageIncrement, false) >= 0, about);
    // Nothing is set aside for later: the file has its final size before it is closed.
    Require(H5Pset_meta_block_size(access, 0) >= 0 && H5Pset_small_data_block_size(access, 0) >= 0, about);
    Require(H5Pset_file_image_callbacks(access, &callbacks) >= 0, about);
    const Hdf5Object file(H5Fcreate("aggregate", H5F_ACC_TRUNC, H5P_DEFAULT, access), H5Fclose, about);
    WriteContent(file, run);
    Require(H5Fflush(file, H5F_SCOPE_GLOBAL) >= 0, about);
    const ssize_t size = H5Fget_file_image(file, nullptr, 0);
    Require(size > 0, about);
    image->size = static_cast<hsize_t>(size);
}

static void WriteContent(hid_t file, const RunRecord &run)
{
    WriteText(file, "format", kFormatName);
    WriteAttribute(file, "format_version", kFormatVersion);
    WriteAttribute(file, "program_version", versionid / 100.0);
    WriteAttribute(file, "particles", ncells);
    WriteAttribute(file, "steps", run.steps);
    WriteAttribute(file, "seconds", run.seconds);
    WriteParameters(file);
    WriteParticles(file);
    WriteTable<double>(file, "surface/faces", static_cast<hsize_t>(nstltri), {3, 3},
                       [](hsize_t i, double *numbers) {
                           for (hsize_t corner = 0; corner < 3; corner++)
                               PutVector(stltri[i].p[corner], numbers + 3 * corner);
                       });
    WriteText(OpenGroup(file, "surface"), "name", growthstate.surfacename);
    WriteTable<double>(file, "roots", static_cast<hsize_t>(CountRoots(cells, ncells)), {3},
                       [](hsize_t i, double *numbers) { PutVector(cells[i].p, numbers); });
    WriteText(OpenTable(file, "roots"), "name", growthstate.rootname);
    WriteWalk(file);
    WriteCamera(file, run);
}

// A group for each group of parameters; each parameter's attribute is followed by that of its unit or name.
static void WriteParameters(hid_t file)
{
    const Hdf5Object parameters = CreateGroup(file, "parameters");
    for (const Parameter &parameter : Parameters()) {
        if (IsMissing(parameters, parameter.group))
            CreateGroup(parameters, parameter.group);
        const Hdf5Object group = OpenGroup(parameters, parameter.group);
        std::visit([&](const auto *field) { WriteAttribute(group, parameter.key, *field); }, parameter.field);
        const std::string key = parameter.key;
        const char *name = nullptr;
        if (parameter.name != nullptr)
            name = parameter.name(static_cast<int>(ParameterValue(parameter)));
        if (name != nullptr)
            WriteText(group, key + "_name", name);
        else if (parameter.name == nullptr)
            WriteText(group, key + "_unit", parameter.unit);
    }
}

static void WriteParticles(hid_t file)
{
    const hsize_t count = static_cast<hsize_t>(ncells);
    WriteTable<double>(file, "particles/position", count, {3},
                       [](hsize_t i, double *numbers) { PutVector(cells[i].p, numbers); });
    WriteTable<double>(file, "particles/flow", count, {},
                       [](hsize_t i, double *number) { *number = cells[i].weight; });
    WriteTable<int>(file, "particles/parent", count, {},
                    [](hsize_t i, int *number) { *number = cells[i].parent; });
}

static void WriteWalk(hid_t file)
{
    WriteTable<double>(file, "walk/launch_positions", kSeedRing, {3},
                       [](hsize_t i, double *numbers) { PutVector(seeds[i], numbers); });
    const Hdf5Object walk = OpenGroup(file, "walk");
    WriteVectorAttribute(walk, "position", growthstate.pos);
    WriteAttribute(walk, "steps_since_particle", growthstate.stepcount);
    WriteAttribute(walk, "launches", nseeds);
    WriteAttribute(walk, "radius", growthstate.radius);
    WriteAttribute(walk, "largest_flow", growthstate.maxweight);
    const GeneratorState held = TakeGenerators();
    uint32_t words[kFeedbackWords]; // the oldest first
    for (int i = 0; i < kFeedbackWords; i++)
        words[i] = held.words[(held.oldest + i) % kFeedbackWords];
    WriteAttribute(walk, "drand48", held.congruence);
    WriteAttribute(walk, "rand", words, kFeedbackWords);
}

static GeneratorState TakeGenerators()
{
    const HeldGenerators now;
    Require(generators.held, "the generators, which are not those of the GNU C library");
    return generators;
}

static void WriteCamera(hid_t file, const RunRecord &run)
{
    const Hdf5Object view = CreateGroup(file, "camera");
    WriteVectorAttribute(view, "position", run.view.vp);
    WriteVectorAttribute(view, "direction", run.view.vd);
    WriteVectorAttribute(view, "up", run.view.vu);
    WriteVectorAttribute(view, "rotation_point", run.view.pr);
    WriteAttribute(view, "aperture", run.view.aperture);
    WriteAttribute(view, "from_window", run.fromwindow ? 1 : 0);
}

// Returns 0, or why the file could not be written whole: a value of errno.
static int SaveImage(const Image &image, const std::string &path)
{
    OutputFile output(path.c_str(), true);
    if (output.Stream() != nullptr) {
        fwrite(image.bytes, 1, image.size, output.Stream());
        if (output.Finish())
            return 0;
    }
    return output.Reason() != 0 ? output.Reason() : EIO;
}

// Reading -------------------------------------------------------------------------------------------------

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
        return bad("no file of an aggregate");
    try {
        const Hdf5Object access(H5Pcreate(H5P_FILE_ACCESS), H5Pclose, "not enough memory");
        H5Pset_file_locking(access, false, true); // which some shared disks refuse
        if (H5Fis_hdf5(path.c_str()) <= 0)
            return bad("no file of an aggregate, or not a whole one");
        const Hdf5Object file(H5Fopen(path.c_str(), H5F_ACC_RDONLY, access), H5Fclose, "not a whole file");
        ReadContent(file, stored);
        return {};
    } catch (const Hdf5Fault &fault) {
        return bad(fault.what());
    }
}

static void ReadContent(hid_t file, StoredAggregate *stored)
{
    Require(H5Aexists(file, "format") > 0 && ReadText(file, "format") == kFormatName,
            "an HDF5 file, but of another program");
    const int version = ReadNumber<int>(file, "format_version");
    Require(version >= 1, "format_version is out of range");
    Require(version <= kFormatVersion, "written by a newer program, in format " + std::to_string(version) +
                                           "; this one reads up to " + std::to_string(kFormatVersion));
    stored->run.steps = ReadNumber<uint64_t>(file, "steps");
    stored->run.seconds = ReadNumber<double>(file, "seconds");
    Require(stored->run.seconds >= 0, "seconds is out of range");
    ReadParameters(file, stored);
    ReadParticles(file, stored);
    CheckParticles(stored->particles.get(), stored->count);
    Require(ReadNumber<int>(file, "particles") == stored->count, "particles does not fit");
    ReadSurfaceAndRoots(file, stored);
    ReadWalk(file, stored);
    ReadCamera(file, stored);
}

// A value must be what the parameter can have; numbers that stand for names may be any.
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
        Require(parameter.name != nullptr || IsAllowed(parameter, value),
                std::string(parameter.group) + "/" + parameter.key + " is out of range");
        stored->values.push_back(value);
    }
}

// Room for so many elements; std::bad_alloc where there is none, which is asked before memory is promised.
template<typename T>
static std::unique_ptr<T[], FreeMemory> Allocate(hsize_t count)
{
    if (count > AvailableMemory() / sizeof(T))
        throw std::bad_alloc();
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
    stored->particles = Allocate<Particle>(count);
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
    stored->faces = Allocate<Triangle>(faces);
    stored->facecount = static_cast<int>(faces);
    Triangle *triangles = stored->faces.get();
    ReadTable<double>(file, "surface/faces", faces, {3, 3}, [=](hsize_t i, const double *numbers) {
        triangles[i] = {};
        for (hsize_t corner = 0; corner < 3; corner++)
            triangles[i].p[corner] = GetVector(numbers + 3 * corner);
        for (const Vector corner : triangles[i].p)
            Require(std::isfinite(Modulus(corner)), "surface/faces: a corner is no place");
    });
    snprintf(stored->state.surfacename, sizeof stored->state.surfacename, "%s",
             ReadText(OpenGroup(file, "surface"), "name").c_str());

    const hsize_t count = CountRows<double>(file, "roots", {3});
    Require(static_cast<int>(count) == CountRoots(stored->particles.get(), stored->count),
            "roots: not those of the particles");
    stored->roots = Allocate<Vector>(count);
    Vector *positions = stored->roots.get();
    ReadTable<double>(file, "roots", count, {3},
                      [=](hsize_t i, const double *numbers) { positions[i] = GetVector(numbers); });
    snprintf(stored->state.rootname, sizeof stored->state.rootname, "%s",
             ReadText(OpenTable(file, "roots"), "name").c_str());
}

static void ReadWalk(hid_t file, StoredAggregate *stored)
{
    const Hdf5Object walk = OpenGroup(file, "walk");
    Require(CountRows<double>(walk, "launch_positions", {3}) == kSeedRing, "launch_positions does not fit");
    stored->launches.resize(kSeedRing);
    ReadTable<double>(walk, "launch_positions", kSeedRing, {3},
                      [=](hsize_t i, const double *numbers) { stored->launches[i] = GetVector(numbers); });
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

// Parents come before their children, so no chain of parents is a ring; roots come before all others.
static void CheckParticles(const Particle *particles, int count)
{
    const int rootcount = CountRoots(particles, count);
    for (int i = 0; i < count; i++) {
        const Particle &particle = particles[i];
        const auto require = [=](bool holds, const char *otherwise) {
            if (!holds)
                throw Hdf5Fault("particle " + std::to_string(i) + " " + otherwise);
        };
        require(std::isfinite(Modulus(particle.p)), "is nowhere: its position is no number");
        require(particle.weight >= 0 && std::isfinite(particle.weight), "has a flow that is out of range");
        require(i < rootcount || particle.parent >= 0, "is a root, or its parent is out of range");
        require(particle.parent < i, "has a parent that does not come before it");
    }
}

// Roots are the particles at the start without a parent.
static int CountRoots(const Particle *particles, int count)
{
    int rootcount = 0;
    while (rootcount < count && particles[rootcount].parent == -1)
        rootcount++;
    return rootcount;
}

// Going on ------------------------------------------------------------------------------------------------

void ResumeRun(StoredAggregate stored)
{
    const std::span<const Parameter> rows = Parameters();
    for (std::size_t i = 0; i < rows.size(); i++)
        std::visit(
            [&](auto *field) {
                *field = static_cast<std::remove_pointer_t<decltype(field)>>(stored.values[i]);
            },
            rows[i].field);
    GrowthState &state = growthstate;
    state.pos = stored.state.pos;
    state.stepcount = stored.state.stepcount;
    state.radius = stored.state.radius;
    state.maxweight = stored.state.maxweight;
    memcpy(state.rootname, stored.state.rootname, sizeof state.rootname);
    memcpy(state.surfacename, stored.state.surfacename, sizeof state.surfacename);
    state.running = 1;
    stats.timestep = 0;

    free(cells);
    cells = stored.particles.release();
    ncells = stored.count;
    free(roots);
    roots = stored.roots.release();
    free(stltri);
    stltri = stored.faces.release();
    nstltri = stored.facecount;
    UpdateSTL();
    std::copy(stored.launches.begin(), stored.launches.end(), seeds);
    nseeds = stored.launchcount;
    ForgetAggregate();

    const HeldGenerators now;
    stored.generators.held = generators.held;
    generators = stored.generators;
}

std::string DifferenceFromRun(const StoredAggregate &stored)
{
    const std::span<const Parameter> rows = Parameters();
    for (std::size_t i = 0; i < rows.size(); i++) {
        const std::string group = rows[i].group;
        const double value = ParameterValue(rows[i]);
        if (group != "drawing" && group != "slices" && value != stored.values[i])
            return group + "." + rows[i].key + " is not the same";
    }
    const auto same = [](Vector a, Vector b) { return a.x == b.x && a.y == b.y && a.z == b.z; };
    if (nstltri != stored.facecount)
        return "the surface is not the same";
    for (int i = 0; i < nstltri; i++)
        for (int corner = 0; corner < 3; corner++)
            if (!same(stltri[i].p[corner], stored.faces[i].p[corner]))
                return "the surface is not the same";
    for (int i = 0; i < ncells; i++)
        if (i >= stored.count || stored.particles[i].parent >= 0 || !same(cells[i].p, stored.particles[i].p))
            return "the roots are not the same";
    if (ncells < stored.count && stored.particles[ncells].parent < 0)
        return "the roots are not the same";
    return "";
}
