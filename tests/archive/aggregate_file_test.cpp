#include "archive/aggregate_file.h"

#include <array>
#include <climits>
#include <cmath>
#include <cstring>
#include <functional>
#include <random>

#include <gtest/gtest.h>
#include <hdf5.h>
#include <unistd.h>

#include "archive/content.h"
#include "archive/hdf5.h"
#include "archive/rescue.h"
#include "base/array.h"
#include "growth/growth_step.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "surface/samples.h"
#include "temporary_file.h"

namespace fs = std::filesystem;

static const std::string kFile = "a.sarkelo.h5";

// A young aggregate of three roots in a box, in the current directory.
static void WriteSmallAggregate()
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
    ASSERT_EQ(WriteAggregate(kFile, run).line, "");
}

// The content of a file, or the line of its fault, which is a kFileFault.
static std::string Read(const std::string &bytes)
{
    const TemporaryFile file(bytes);
    StoredAggregate stored;
    const Fault fault = ReadAggregate(file.path(), &stored);
    if (!fault)
        return Content(stored);
    EXPECT_EQ(fault.kind, kFileFault);
    EXPECT_TRUE(fault.line.starts_with(std::string(file.path()) + ": ")) << fault.line;
    EXPECT_EQ(fault.line.find('\n'), std::string::npos) << fault.line;
    return "fault";
}

TEST(AggregateFile, CutShortAnywhereItIsRefused)
{
    const TemporaryDirectory directory;
    WriteSmallAggregate();
    const std::string whole = ReadWhole(kFile);
    for (size_t length = 0; length < whole.size(); length += 512)
        EXPECT_TRUE(Read(whole.substr(0, length)) == "fault") << length;
    EXPECT_TRUE(Read(whole.substr(0, whole.size() - 1)) == "fault");
}

// 2,000 flips of a bit anywhere and 1,000 in the first 8 KB: each is noticed, or hits what nothing is kept in.
TEST(AggregateFile, AFlippedBitIsNoticedOrDoesNotMatter)
{
    const TemporaryDirectory directory;
    WriteSmallAggregate();
    const std::string whole = ReadWhole(kFile);
    const std::string content = Read(whole);
    ASSERT_GT(content.size(), 10000u);
    std::mt19937 random(20);
    int noticed = 0;
    for (int k = 0; k < SARKELO_FLIPS; k++) {
        std::string bytes = whole;
        const size_t room = k % 3 == 2 ? 8192 : bytes.size();
        const size_t at = random() % room;
        bytes[at] = static_cast<char>(bytes[at] ^ 1 << random() % 8);
        const std::string found = Read(bytes);
        noticed += found == "fault";
        EXPECT_TRUE(found == "fault" || found == content) << "byte " << at;
    }
    EXPECT_GT(noticed, SARKELO_FLIPS / 2);
}

// Sets one number of a table.
template<typename T>
static void SetInTable(hid_t file, const char *name, hsize_t index, T value)
{
    const Hdf5Object table(H5Dopen2(file, name, H5P_DEFAULT), H5Dclose, name);
    const Hdf5Object space(H5Dget_space(table), H5Sclose, name);
    std::vector<T> numbers(static_cast<size_t>(H5Sget_simple_extent_npoints(space)));
    H5Dread(table, TypesOf<T>().memory, H5S_ALL, H5S_ALL, H5P_DEFAULT, numbers.data());
    numbers.at(index) = value;
    H5Dwrite(table, TypesOf<T>().memory, H5S_ALL, H5S_ALL, H5P_DEFAULT, numbers.data());
}

template<typename T>
static void SetAttribute(hid_t file, const char *object, const char *name, T value)
{
    H5Adelete_by_name(file, object, name, H5P_DEFAULT);
    const Hdf5Object opened(H5Oopen(file, object, H5P_DEFAULT), H5Oclose, name);
    WriteAttribute(opened, name, value);
}

// By one that holds nothing, in storage with the given settings; else it is there in full.
static void ReplaceTable(hid_t file, const char *name, std::vector<hsize_t> shape,
                         const std::function<void(hid_t)> &set = nullptr)
{
    H5Ldelete(file, name, H5P_DEFAULT);
    const Hdf5Object space(H5Screate_simple(static_cast<int>(shape.size()), shape.data(), nullptr), H5Sclose,
                           name);
    const Hdf5Object settings(H5Pcreate(H5P_DATASET_CREATE), H5Pclose, name);
    if (set)
        set(settings);
    else
        H5Pset_alloc_time(settings, H5D_ALLOC_TIME_EARLY);
    const Hdf5Object table(H5Dcreate2(file, name, H5T_IEEE_F64LE, space, H5P_DEFAULT, settings, H5P_DEFAULT),
                           H5Dclose, name);
}

static void SetChunk(hid_t settings, hsize_t rows)
{
    const hsize_t chunk[] = {rows, 3};
    H5Pset_chunk(settings, 2, chunk);
}

// Files whose checksums are right and whose content is not, as another program could write them.
TEST(AggregateFile, WhatCannotBeIsRefusedInALine)
{
    const TemporaryDirectory directory;
    const struct {
        const char *why;
        std::function<void(hid_t)> change;
    } rows[] = {
        {"particle 7 has a parent that does not come before it",
         [](hid_t file) { SetInTable<int>(file, "particles/parent", 7, 7); }},
        {"particle 8 has a parent that does not come before it", // 8 and 9 form a ring
         [](hid_t file) {
             SetInTable<int>(file, "particles/parent", 8, 9);
             SetInTable<int>(file, "particles/parent", 9, 8);
         }},
        {"particle 9 is a root, or its parent is out of range",
         [](hid_t file) { SetInTable<int>(file, "particles/parent", 9, -2); }},
        {"particle 10 is a root, or its parent is out of range",
         [](hid_t file) { SetInTable<int>(file, "particles/parent", 10, -1); }},
        {"particle 0: position is not finite",
         [](hid_t file) { SetInTable<double>(file, "particles/position", 2, NAN); }},
        {"particle 1: position is not finite",
         [](hid_t file) { SetInTable<double>(file, "particles/position", 3, INFINITY); }},
        {"particle 5 has a flow that is out of range",
         [](hid_t file) { SetInTable<double>(file, "particles/flow", 5, -1); }},
        {"surface/faces: a corner is not a finite position",
         [](hid_t file) { SetInTable<double>(file, "surface/faces", 5, NAN); }},
        {"particles: the tables are not of the same length",
         [](hid_t file) { ReplaceTable(file, "particles/flow", {299}); }},
        {"particles/position has the wrong type or shape",
         [](hid_t file) {
             ReplaceTable(file, "particles/position", {300, 2});
         }},
        {"particles/position has the wrong type or shape",
         [](hid_t file) {
             ReplaceTable(file, "particles/position", {3000000000, 3}, [](hid_t) {});
         }},
        {"particles/flow is missing", [](hid_t file) { H5Ldelete(file, "particles/flow", H5P_DEFAULT); }},
        {"particles does not fit", [](hid_t file) { SetAttribute<int>(file, ".", "particles", 299); }},
        {"roots: not those of the particles",
         [](hid_t file) {
             ReplaceTable(file, "roots", {2, 3});
         }},
        {"written by a newer program, in format 4; this one reads up to 3",
         [](hid_t file) { SetAttribute<int>(file, ".", "format_version", 4); }},
        {"format_version is not a number of type int32",
         [](hid_t file) { SetAttribute<double>(file, ".", "format_version", 1); }},
        {"an HDF5 file, but of another program", [](hid_t file) { H5Adelete(file, "format"); }},
        {"growth/stickiness is 101; allowed: 1 to 100",
         [](hid_t file) { SetAttribute<double>(file, "parameters/growth", "stickiness", 101); }},
        {"seed is missing",
         [](hid_t file) { H5Adelete_by_name(file, "parameters/growth", "seed", H5P_DEFAULT); }},
        {"growth/association is 5; allowed: 0, 1",
         [](hid_t file) { SetAttribute<int>(file, "parameters/growth", "association", 5); }},
        {"source/type is -1; allowed: 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17",
         [](hid_t file) { SetAttribute<int>(file, "parameters/source", "type", -1); }},
        {"drawing/mode is 4; allowed: 1, 2, 3, 5",
         [](hid_t file) { SetAttribute<int>(file, "parameters/drawing", "mode", 4); }},
        {"roots/count is 2; allowed: 3 and above",
         [](hid_t file) { SetAttribute<int>(file, "parameters/roots", "count", 2); }},
        {"steps is 296; allowed: 297 to 9223372036854775807",
         [](hid_t file) { SetAttribute<uint64_t>(file, ".", "steps", 296); }},
        {"steps is not a number of type uint64",
         [](hid_t file) {
             H5Adelete(file, "steps");
             WriteAttribute(file, "steps", -1);
         }},
        {"particle 299 is farther from its parent than any particle sticks",
         [](hid_t file) { SetInTable<double>(file, "particles/position", 897, 1e100); }},
        {"roots: not those of the particles", [](hid_t file) { SetInTable<double>(file, "roots", 4, NAN); }},
        {"walk/launch_positions: a number is missing",
         [](hid_t file) { SetInTable<double>(file, "walk/launch_positions", 7, NAN); }},
        {"particles/position is only a link, and links are not followed",
         [](hid_t file) {
             H5Ldelete(file, "particles", H5P_DEFAULT);
             H5Lcreate_external("other.h5", "particles", file, "particles", H5P_DEFAULT, H5P_DEFAULT);
         }},
        {"particles/position is stored in another place, which is not read", // in itself
         [](hid_t file) {
             const hsize_t shape[] = {300, 3};
             const Hdf5Object all(H5Screate_simple(2, shape, nullptr), H5Sclose, "");
             ReplaceTable(file, "particles/position", {300, 3}, [&](hid_t settings) {
                 H5Pset_virtual(settings, all, ".", "particles/position", all);
             });
         }},
        {"particles/position is stored in another place, which is not read",
         [](hid_t file) {
             ReplaceTable(file, "particles/position", {300, 3},
                          [](hid_t settings) { H5Pset_external(settings, "other", 0, H5F_UNLIMITED); });
         }},
        {"particles/position is filtered by something else than shuffle, deflate and fletcher32, once each",
         [](hid_t file) {
             ReplaceTable(file, "particles/position", {300, 3}, [](hid_t settings) {
                 SetChunk(settings, 300);
                 H5Pset_nbit(settings);
             });
         }},
        {"particles/position: 100000000 rows are more than a file of ",
         [](hid_t file) {
             ReplaceTable(file, "particles/position", {100000000, 3}, [](hid_t settings) {
                 SetChunk(settings, 16384);
                 H5Pset_deflate(settings, 1);
             });
         }},
        {"particles/position is cut into chunks that are too large",
         [](hid_t file) {
             ReplaceTable(file, "particles/position", {100000, 3}, [](hid_t settings) {
                 SetChunk(settings, 100000);
                 H5Pset_deflate(settings, 1);
             });
         }},
        {"particles/position was not written to its end",
         [](hid_t file) {
             ReplaceTable(file, "particles/position", {300, 3},
                          [](hid_t settings) { SetChunk(settings, 100); });
             const Hdf5Object table(H5Dopen2(file, "particles/position", H5P_DEFAULT), H5Dclose, "");
             const hsize_t first[] = {0, 0};
             H5Dwrite_chunk(table, H5P_DEFAULT, 0, first, 2400, std::array<double, 300>().data());
         }},
        {"particles/flow was not written to its end",
         [](hid_t file) { ReplaceTable(file, "particles/flow", {300}, [](hid_t) {}); }},
        {"growth/walk is 2; allowed: 0, 1",
         [](hid_t file) { SetAttribute<int>(file, "parameters/growth", "walk", 2); }},
        {"flights with a rotation",
         [](hid_t file) {
             SetAttribute<int>(file, "parameters/growth", "walk", kWalkFlights);
             SetAttribute<double>(file, "parameters/growth", "rotation", 1);
         }},
        {"walk: a number is out of range",
         [](hid_t file) { SetAttribute<double>(file, "walk", "radius", NAN); }},
        {"walk/drand48 is out of range",
         [](hid_t file) { SetAttribute<uint64_t>(file, "walk", "drand48", uint64_t{1} << 48); }},
        {"camera/aperture is out of range",
         [](hid_t file) { SetAttribute<double>(file, "camera", "aperture", 180); }},
    };
    WriteSmallAggregate();
    const std::string whole = ReadWhole(kFile);
    for (const auto &row : rows) {
        std::ofstream(kFile) << whole;
        {
            const Hdf5Object file(H5Fopen(kFile.c_str(), H5F_ACC_RDWR, H5P_DEFAULT), H5Fclose, "file");
            row.change(file);
        }
        StoredAggregate stored;
        const Fault fault = ReadAggregate(kFile, &stored);
        EXPECT_EQ(fault.kind, kFileFault);
        std::string line = kFile + ": " + row.why;
        if (line.ends_with("a file of "))
            line += std::to_string(fs::file_size(kFile)) + " bytes can hold";
        EXPECT_EQ(fault.line, line);
    }
}

TEST(AggregateFile, OtherFilesAreRefused)
{
    const TemporaryDirectory directory;
    std::ofstream("text") << "solid nothing\n";
    std::ofstream("empty");
    {
        const Hdf5Object other(H5Fcreate("other.h5", H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT), H5Fclose, "");
    }
    const std::pair<const char *, const char *> rows[] = {
        {"text", "text: not an aggregate file, or truncated"},
        {"empty", "empty: not an aggregate file, or truncated"},
        {".", ".: not an aggregate file"},
        {"missing", "missing: cannot be read: No such file or directory"},
        {"other.h5", "other.h5: an HDF5 file, but of another program"},
    };
    for (const auto &[path, line] : rows) {
        StoredAggregate stored;
        EXPECT_EQ(ReadAggregate(path, &stored).line, line);
    }
    chmod("text", 0);
    if (geteuid() != 0) {
        StoredAggregate stored;
        EXPECT_EQ(ReadAggregate("text", &stored).line, "text: cannot be read: Permission denied");
    }
}

// A run that no file can hold is told when it is to be written, not when it is read.
TEST(AggregateFile, RootsThatAreNowhereAreNotWritten)
{
    const TemporaryDirectory directory;
    StartAfresh();
    const TemporaryFile seedfile("0 0 0\n1 nan 2\n");
    ASSERT_EQ(ReadSeedFile(seedfile.path()), kSeedFileRead);
    EXPECT_EQ(WriteAggregate(kFile, {}).line,
              "Cannot write \"a.sarkelo.h5\": particle 1: position is not finite");
    EXPECT_FALSE(fs::exists(kFile));
}

// Everything that the panels of a window let a user change while it grows can be read again.
TEST(AggregateFile, WhateverAUserSetsCanBeReadAgain)
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
        StoredAggregate stored;
        EXPECT_EQ(ReadAggregate(kFile, &stored).line, "");
    }
}

TEST(AggregateFile, ARescueReplacesNoFileAndGivesEachFoldersReason)
{
    const TemporaryDirectory directory;
    WriteSmallAggregate();
    const std::string earlier = ReadWhole(kFile);
    RunRecord run;
    run.view.aperture = 60;
    std::string path;
    EXPECT_EQ(WriteRescue({"missing", "."}, "a", run, &path).line, "");
    EXPECT_EQ(path, "a-2.sarkelo.h5");
    StoredAggregate stored;
    EXPECT_EQ(ReadAggregate(path, &stored).line, "");
    EXPECT_TRUE(ReadWhole(kFile) == earlier);
    cells[1].p.x = NAN;
    EXPECT_EQ(WriteRescue({"missing", "."}, "a", run, &path).line,
              "Cannot write to \"missing\": No such file or directory; Cannot write \"a-3.sarkelo.h5\": "
              "particle 1: "
              "position is not finite");
    EXPECT_EQ(CountFiles(), 2);
}

TEST(AggregateFile, FilesOfFormatOneWereWalkedInSteps)
{
    const TemporaryDirectory directory;
    WriteSmallAggregate();
    {
        const Hdf5Object file(H5Fopen(kFile.c_str(), H5F_ACC_RDWR, H5P_DEFAULT), H5Fclose, "file");
        for (const char *later : {"walk", "launch_scale", "killing_scale"})
            H5Adelete_by_name(file, "parameters/growth", later, H5P_DEFAULT);
        SetAttribute<int>(file, ".", "format_version", 1);
    }
    StoredAggregate stored;
    ASSERT_EQ(ReadAggregate(kFile, &stored).line, "");
    growthstate.walk = kWalkFlights;
    growthstate.launchscale = growthstate.killingscale = 2;
    ResumeRun(std::move(stored));
    EXPECT_EQ(growthstate.walk, kWalkSteps);
    EXPECT_EQ(growthstate.launchscale, 1);
    EXPECT_EQ(growthstate.killingscale, 1);
}

TEST(AggregateFile, AParameterIsKeptWithItsUnitAndARunWithItsName)
{
    const TemporaryDirectory directory;
    WriteSmallAggregate();
    const Hdf5Object file(H5Fopen(kFile.c_str(), H5F_ACC_RDONLY, H5P_DEFAULT), H5Fclose, "");
    for (const Parameter &parameter : Parameters()) {
        const std::string path = std::string("parameters/") + parameter.group;
        const Hdf5Object group(H5Gopen2(file, path.c_str(), H5P_DEFAULT), H5Gclose, path);
        const bool whole = std::holds_alternative<int *>(parameter.field);
        EXPECT_EQ(whole ? ReadNumber<int>(group, parameter.key) : ReadNumber<double>(group, parameter.key),
                  ParameterValue(parameter))
            << parameter.key;
        if (parameter.name == nullptr)
            EXPECT_EQ(ReadText(group, std::string(parameter.key) + "_unit"), parameter.unit);
        else
            EXPECT_EQ(ReadText(group, std::string(parameter.key) + "_name"),
                      parameter.name(static_cast<int>(ParameterValue(parameter))));
    }
}
