#include "archive/aggregate_file.h"

#include <array>
#include <climits>
#include <cmath>
#include <functional>
#include <random>

#include <gtest/gtest.h>
#include <hdf5.h>

#include "archive/hdf5.h"
#include "base/array.h"
#include "growth/aggregate.h"
#include "growth/growth_step.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "surface/samples.h"
#include "temporary_file.h"

static const std::string kFile = "a.sarkelo.h5";
using Change = std::function<void(hid_t)>; // of an aggregate file, as another program could make it

// A young aggregate of three roots in a box, in the current directory. Returns the file's bytes.
static std::string WriteSmallAggregate()
{
    StartAfresh();
    growthstate.nroots = 3;
    growthstate.roottype = kRootRingZ;
    growthstate.association = 1;
    RestartFromRoots();
    BuildSample(11);
    Grow(IterateSystem, 300, 10000000);
    RunRecord run;
    growthstate.steptotal = 1234567890123;
    run.seconds = 0.1;
    run.view.vp = {60, 1, 2};
    run.view.aperture = 60;
    run.fromwindow = true;
    EXPECT_EQ(WriteAggregate(kFile, run).line, "");
    return ReadWhole(kFile);
}

// The file of a stored run once it has taken the place of the run in the records, byte after byte
static std::string Content(StoredAggregate stored)
{
    const RunRecord run = stored.run;
    ResumeRun(std::move(stored));
    std::filesystem::remove("content"); // else it is flushed to the disk
    EXPECT_EQ(WriteAggregate("content", run).line, "");
    return ReadWhole("content");
}

// The content of a file of these bytes, or of its fault the line without the path
static std::string Read(const std::string &bytes)
{
    std::filesystem::remove(kFile); // a file that is written anew is flushed to the disk
    std::ofstream(kFile) << bytes;
    StoredAggregate stored;
    const Fault fault = ReadAggregate(kFile, &stored);
    if (!fault)
        return Content(std::move(stored));
    EXPECT_TRUE(fault.kind == kFileFault && fault.line.starts_with(kFile + ": ")) << fault.line;
    return fault.line.substr(kFile.size() + 2);
}

static std::string ReadChanged(const std::string &bytes, const Change &change)
{
    std::ofstream(kFile) << bytes;
    change(Hdf5Object(H5Fopen(kFile.c_str(), H5F_ACC_RDWR, H5P_DEFAULT), H5Fclose, "file"));
    return Read(ReadWhole(kFile));
}

// Cut short, or with a bit flipped anywhere or in its first 8 KB
TEST(AggregateFile, DamageIsDetectedOrHarmless)
{
    const TemporaryDirectory directory;
    const std::string whole = WriteSmallAggregate();
    ASSERT_GT(whole.size(), 10000u);
    ASSERT_TRUE(Read(whole) == whole);
    for (size_t length = 0; length < whole.size();
         length += 1 + std::min<size_t>(511, whole.size() - length - 1))
        EXPECT_LT(Read(whole.substr(0, length)).size(), 100u) << length;
    std::mt19937 random(20);
    for (int k = 0; k < SARKELO_FLIPS; k++) {
        std::string bytes = whole;
        const size_t at = random() % (k % 3 == 2 ? 8192 : bytes.size());
        bytes[at] = static_cast<char>(bytes[at] ^ 1 << random() % 8);
        const std::string found = Read(bytes);
        EXPECT_TRUE(found.size() < 100 || found == whole) << "byte " << at;
    }
}

// Sets one number of a table.
template<typename T>
static Change Cell(const char *name, hsize_t index, T value)
{
    return [=](hid_t file) {
        const Hdf5Object table(H5Dopen2(file, name, H5P_DEFAULT), H5Dclose, name);
        const Hdf5Object space(H5Dget_space(table), H5Sclose, name);
        std::vector<T> numbers(static_cast<size_t>(H5Sget_simple_extent_npoints(space)));
        H5Dread(table, TypesOf<T>().memory, H5S_ALL, H5S_ALL, H5P_DEFAULT, numbers.data());
        numbers.at(index) = value;
        H5Dwrite(table, TypesOf<T>().memory, H5S_ALL, H5S_ALL, H5P_DEFAULT, numbers.data());
    };
}

static Change NoAttribute(const char *object, const char *name)
{
    return [=](hid_t file) { H5Adelete_by_name(file, object, name, H5P_DEFAULT); };
}

template<typename T>
static Change Attribute(const char *object, const char *name, T value)
{
    return [=](hid_t file) {
        NoAttribute(object, name)(file);
        WriteAttribute(Hdf5Object(H5Oopen(file, object, H5P_DEFAULT), H5Oclose, name), name, value);
    };
}

// Replaces a table by one that holds nothing, in storage with the given settings.
static Change Table(const char *name, const std::vector<hsize_t> &shape, const Change &set)
{
    return [=](hid_t file) {
        H5Ldelete(file, name, H5P_DEFAULT);
        const int rank = static_cast<int>(shape.size());
        const Hdf5Object space(H5Screate_simple(rank, shape.data(), nullptr), H5Sclose, name);
        const Hdf5Object settings(H5Pcreate(H5P_DATASET_CREATE), H5Pclose, name);
        set(settings);
        H5Dclose(H5Dcreate2(file, name, H5T_IEEE_F64LE, space, H5P_DEFAULT, settings, H5P_DEFAULT));
    };
}

static const Change kUnwritten = [](hid_t) {};
static const Change kAllocated = [](hid_t settings) { H5Pset_alloc_time(settings, H5D_ALLOC_TIME_EARLY); };

static Change Chunks(hsize_t rows)
{
    return [=](hid_t settings) { H5Pset_chunk(settings, 2, std::array<hsize_t, 2>{rows, 3}.data()); };
}

static Change operator+(const Change &first, const Change &second)
{
    return [=](hid_t object) { first(object), second(object); };
}

// Files whose checksums are right and whose content is not.
TEST(AggregateFile, InvalidContentIsRefused)
{
    const char *parent = "particles/parent", *position = "particles/position", *flow = "particles/flow";
    const Change firstchunk = [=](hid_t file) {
        const Hdf5Object table(H5Dopen2(file, position, H5P_DEFAULT), H5Dclose, "");
        const hsize_t first[] = {0, 0};
        H5Dwrite_chunk(table, H5P_DEFAULT, 0, first, 2400, std::array<double, 300>().data());
    };
    const Change link = [](hid_t file) {
        H5Ldelete(file, "particles", H5P_DEFAULT);
        H5Lcreate_external("other.h5", "particles", file, "particles", H5P_DEFAULT, H5P_DEFAULT);
    };
    const Change ofitself = [=](hid_t settings) {
        const hsize_t shape[] = {300, 3};
        const Hdf5Object all(H5Screate_simple(2, shape, nullptr), H5Sclose, "");
        H5Pset_virtual(settings, all, ".", position, all);
    };
    const Change external = [](hid_t settings) { H5Pset_external(settings, "other", 0, H5F_UNLIMITED); };
    const Change deflate = [](hid_t settings) { H5Pset_deflate(settings, 1); };
    const std::pair<std::string, Change> rows[] = {
        {"particle 7 has a parent that does not come before it", Cell(parent, 7, 7)},
        {"particle 9 is a root, or its parent is out of range", Cell(parent, 9, -2)},
        {"particle 10 is a root, or its parent is out of range", Cell(parent, 10, -1)},
        {"particle 0: position is not finite", Cell<double>(position, 2, NAN)},
        {"particle 299 is farther from its parent than any particle sticks", Cell(position, 897, 1e100)},
        {"particle 5 has a flow that is out of range", Cell(flow, 5, -1.0)},
        {"surface/faces: a corner is not a finite position", Cell<double>("surface/faces", 5, NAN)},
        {"roots: not those of the particles", Cell<double>("roots", 4, NAN)},
        {"walk/launch_positions: a number is missing", Cell<double>("walk/launch_positions", 7, NAN)},
        {"particles: the tables are not of the same length", Table(flow, {299}, kAllocated)},
        {"particles/position has the wrong type or shape", Table(position, {300, 2}, kAllocated)},
        {"particles/position has the wrong type or shape", Table(position, {3000000000, 3}, kUnwritten)},
        {"particles/flow is missing", [=](hid_t file) { H5Ldelete(file, flow, H5P_DEFAULT); }},
        {"particles is not the length of the table of positions", Attribute(".", "particles", 299)},
        {"written by another version of the program, in format 3; this one reads format 4",
         Attribute(".", "format_version", 3)},
        {"format_version is not a number of type int32", Attribute(".", "format_version", 1.0)},
        {"format_version is not a number of type int32", Attribute<uint64_t>(".", "format_version", 3)},
        {"an HDF5 file, but of another program", NoAttribute(".", "format")},
        {"growth/stickiness is 101; allowed: 1 to 100", Attribute("parameters/growth", "stickiness", 101.0)},
        {"seed is missing", NoAttribute("parameters/growth", "seed")},
        {"drawing/mode is 4; allowed: 1, 2, 3, 5", Attribute("parameters/drawing", "mode", 4)},
        {"roots/count is 2; allowed: 3 and above", Attribute("parameters/roots", "count", 2)},
        {"steps is 296; allowed: 297 to 9223372036854775807", Attribute<uint64_t>(".", "steps", 296)},
        {"steps is not a number of type uint64", Attribute(".", "steps", -1)},
        {"growth.rotation is not 0, and flights cannot be turned; growth.walk \"steps\" can",
         Attribute<int>("parameters/growth", "walk", kWalkFlights) +
             Attribute("parameters/growth", "rotation", 1.0)},
        {"walk: a number is out of range", Attribute<double>("walk", "radius", NAN)},
        {"walk/drand48 is out of range", Attribute("walk", "drand48", uint64_t{1} << 48)},
        {"camera/aperture is out of range", Attribute("camera", "aperture", 180.0)},
        {"particles/position is only a link, and links are not followed", link},
        {"particles/position is stored in another place, which is not read",
         Table(position, {300, 3}, ofitself)},
        {"particles/position is stored in another place, which is not read",
         Table(position, {300, 3}, external)},
        {"particles/position is filtered by something else than shuffle, deflate and fletcher32, once each",
         Table(position, {300, 3}, Chunks(300) + deflate + deflate)},
        {"particles/position: 100000000 rows are more than a file of ",
         Table(position, {100000000, 3}, Chunks(16384) + deflate)},
        {"particles/position is cut into chunks that are too large",
         Table(position, {100000, 3}, Chunks(100000) + deflate)},
        {"particles/position was not written to its end",
         Table(position, {300, 3}, Chunks(100)) + firstchunk},
        {"particles/flow was not written to its end", Table(flow, {300}, kUnwritten)},
    };
    const TemporaryDirectory directory;
    const std::string whole = WriteSmallAggregate();
    for (const auto &[line, change] : rows) {
        const std::string found = ReadChanged(whole, change).substr(0, 200);
        EXPECT_EQ(line.back() == ' ' ? found.substr(0, line.size()) : found, line);
    }
}

// Everything that the panels of a window let a user change while it grows can be read again.
TEST(AggregateFile, ExtremeSettingsAreReadBack)
{
    const TemporaryDirectory directory;
    RunRecord run;
    run.view.aperture = 60;
    const std::function<void()> changes[] = {
        [] { growthstate.branchlength = 1e308; },
        [] { growthstate.branchlength = 1e308, growthstate.sourcetype = kSourceAxisPlusX; },
        [] { growthstate.nroots = INT_MAX; },
        [] { growthstate.rootrange = growthstate.thickto = NAN; },
        [] { options.surfacemode = 0; }, // while boxes are counted
        [] { cells[1].p.x = 1e100; },    // of a seed file
    };
    for (const auto &change : changes) {
        StartAfresh();
        growthstate.nroots = 0; // the origin all the same
        RestartFromRoots();
        AppendToArray(&cells, &ncells, Particle{{0, 0, 0}, 0, -1, 0});
        growthstate.nroots = 2;
        change();
        ForgetAggregate();
        for (int k = 0; k < 20000; k++)
            IterateSystem();
        EXPECT_EQ(WriteAggregate(kFile, run).line, "");
        const std::string whole = ReadWhole(kFile);
        EXPECT_TRUE(Read(whole) == whole);
    }
}
