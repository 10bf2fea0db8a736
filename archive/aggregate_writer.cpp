#include <cmath>

#include "archive/aggregate_file.h"
#include "archive/format.h"
#include "archive/tables.h"
#include "base/output_file.h"
#include "growth/parameters.h"
#include "search/neighbour_search.h"

// Bytes by which the file in memory grows
constexpr std::size_t kImageIncrement = std::size_t{1} << 20;

namespace
{
// The bytes of an HDF5 file made in memory, where a full disk cannot stop the library halfway
struct Image {
    void *bytes = nullptr; // owned by the library until the file is closed, then by Image
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
static Fault SaveImage(const Image &image, const std::string &path);
static Vector PlaceOrOrigin(Vector p);

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
    try {
        CheckParticles(cells, ncells);
        CheckFaces(stltri, nstltri);
    } catch (const Hdf5Fault &fault) {
        return WriteFault(path, fault.what());
    }
    Image image;
    try {
        MakeImage(run, &image);
    } catch (const Hdf5Fault &fault) {
        return WriteFault(path, std::string("not enough memory for ") + fault.what(), kMemoryFault);
    }
    if (image.bytes == nullptr)
        return WriteFault(path, "not enough memory", kMemoryFault);
    return SaveImage(image, path);
}

// The library calls this in place of freeing the bytes of the file: the Image takes them over.
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
    // A version of HDF5 files in which all metadata, chunk indexes included, have checksums
    Require(H5Pset_libver_bounds(access, H5F_LIBVER_V110, H5F_LIBVER_V110) >= 0, about);
    Require(H5Pset_fapl_core(access, kImageIncrement, false) >= 0, about);
    // Without blocks reserved for later metadata, the file has its final size before it is closed.
    Require(H5Pset_meta_block_size(access, 0) >= 0 && H5Pset_small_data_block_size(access, 0) >= 0, about);
    Require(H5Pset_file_image_callbacks(access, &callbacks) >= 0, about);
    // Without time stamps, the same run makes the same file.
    const Hdf5Object creation(H5Pcreate(H5P_FILE_CREATE), H5Pclose, about);
    Require(H5Pset_obj_track_times(creation, false) >= 0, about);
    const Hdf5Object file(H5Fcreate("aggregate", H5F_ACC_TRUNC, creation, access), H5Fclose, about);
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
    WriteAttribute(file, "steps", static_cast<uint64_t>(growthstate.steptotal));
    WriteAttribute(file, "seconds", run.seconds);
    WriteParameters(file);
    for (const char *group : {"particles", "surface", "walk"})
        CreateGroup(file, group);
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

// Writes a group for each group of parameters. An attribute with its unit, or the name of its value, follows each
// parameter.
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
                       [](hsize_t i, double *numbers) { PutVector(PlaceOrOrigin(seeds[i]), numbers); });
    const Hdf5Object walk = OpenGroup(file, "walk");
    WriteVectorAttribute(walk, "position", PlaceOrOrigin(growthstate.pos));
    WriteAttribute(walk, "steps_since_particle", growthstate.stepcount);
    WriteAttribute(walk, "launches", nseeds);
    WriteAttribute(walk, "radius", growthstate.radius);
    WriteAttribute(walk, "largest_flow", growthstate.maxweight);
    uint32_t words[kFeedbackWords]; // the oldest first
    for (int i = 0; i < kFeedbackWords; i++)
        words[i] = generators.words[(generators.oldest + i) % kFeedbackWords];
    WriteAttribute(walk, "drand48", generators.congruence);
    WriteAttribute(walk, "rand", words, kFeedbackWords);
}

// Returns the origin for a position that is not a number, which branch lengths near the largest number can lead to: a
// file with such a position could not be read.
static Vector PlaceOrOrigin(Vector p)
{
    return std::isnan(Modulus(p)) ? Vector{0, 0, 0} : p;
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

static Fault SaveImage(const Image &image, const std::string &path)
{
    OutputFile output(path.c_str());
    if (output.Stream() != nullptr)
        fwrite(image.bytes, 1, image.size, output.Stream());
    return output.Finish();
}
