#include "export/slices.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "base/array.h"
#include "golden.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"
#include "temporary_file.h"

// What DoSlice reports, and the files, each shortened.
static std::string Sliced(int count, Vector n, SliceResult expected = kSlicesDone)
{
    const TemporaryDirectory directory;
    if (expected == kSliceUnopened)
        std::filesystem::create_directory("slice_001.txt");
    testing::internal::CaptureStderr();
    EXPECT_EQ(DoSlice(".", count, n, stderr), expected);
    std::string text = Shortened(testing::internal::GetCapturedStderr(), 12);
    for (const char *name : {"slice_000.txt", "slice_001.txt", "slice_002.txt", "slice_003.txt"})
        text += std::string(name) + ": " + Shortened(ReadWhole(name), 2);
    return text;
}

TEST(Slices, FilesAndReportsAreThoseOfRightBefore)
{
    StartWith({{&growthstate.nroots, 3}, {&growthstate.roottype, kRootRingZ}});
    Grow(IterateSystem, 400, 10000000);
    Vector oblique = {1, -2, 0.5};
    Normalise(&oblique);
    std::string text;
    for (options.debug = 1; options.debug >= 0; options.debug--)
        for (const Vector n : {Vector{0, 0, 1}, Vector{1, 0, 0}, oblique})
            text += Sliced(4, n);
    options.debug = 0;
    text += Sliced(3, {0, 0, 1}, kSliceUnopened);
    for (const double radius : {0.0, -1.0, double(INFINITY), double(NAN), 1e308}) {
        growthstate.radius = radius;
        text += Sliced(3, {0, 0, 1});
    }
    ExpectGolden("slices.txt", text);
}

// Ends on a plane are inside, and a branch across it at a grazing angle is cut where it crosses.
TEST(Slices, BranchesOnAndAlongThePlanes)
{
    const struct {
        Vector p, q;
        int kept;
        Vector start, end;
    } rows[] = {{{0, 0, 1}, {5, 0, 1}, 1, {0, 0, 1}, {5, 0, 1}},
                {{0, 0, 0}, {5, 0, 0}, 1, {0, 0, 0}, {5, 0, 0}},
                {{0, 0, 1.5}, {5, 0, 1.25}, 0, {}, {}},
                {{0, 0, 1 - 1e-6}, {4, 0, 1 + 1e-6}, 1, {2, 0, 1}, {0, 0, 1 - 1e-6}}};
    for (const auto &row : rows) {
        Vector start = {}, end = {};
        EXPECT_EQ(ClipBranch(row.p, row.q, {{0, 0, 1}, 1, 0}, &start, &end), row.kept) << row.p.z;
        EXPECT_LT(VectorLength(start, row.start) + VectorLength(end, row.end), 1e-6) << row.p.z;
    }
}

TEST(Slices, OneLongChain)
{
    StartAfresh();
    ncells = 0;
    for (int i = 0; i < 200000; i++)
        AppendToArray(&cells, &ncells, Particle{{0, 0, i * 0.001}, 0, i - 1, 0});
    growthstate.radius = 200;
    EXPECT_NE(Sliced(2, {0, 0, 1}).find("of 199999 lines"), std::string::npos);
}
