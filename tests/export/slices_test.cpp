#include "export/slices.h"

#include <gtest/gtest.h>

#include "base/array.h"
#include "golden.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"
#include "temporary_file.h"

// What DoSlice reports and returns, and the files, each shortened.
static std::string Sliced(int count, Vector n, bool isblocked = false)
{
    const TemporaryDirectory directory;
    if (isblocked)
        std::filesystem::create_directory("slice_001.txt");
    testing::internal::CaptureStderr();
    const SliceResult result = DoSlice(".", count, n, stderr);
    std::string text = Shortened(testing::internal::GetCapturedStderr(), 8);
    if (result.fault)
        text += "fault: " + result.fault.line + "; unopened: " + result.unopened + "\n";
    for (const char *name : {"slice_000.txt", "slice_001.txt", "slice_002.txt", "slice_003.txt"})
        text += std::string(name) + ":\n" + Shortened(ReadWhole(name), 6);
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
    text += Sliced(3, {0, 0, 1}, true);
    const Vector chain[] = {{0, 0, 0},        {2, 0, 0},        {2, 1, 1}, {3, 1, 1},
                            {3, 1, 1 - 1e-6}, {7, 1, 1 + 1e-6}, {7, 1, -3}};
    ncells = 0;
    for (const Vector &p : chain) // along planes, and across one at a grazing angle
        AppendToArray(&cells, &ncells, Particle{p, 0, ncells - 1, 0});
    growthstate.radius = 2;
    text += Sliced(4, {0, 0, 1});
    for (const double radius : {0.0, -1.0, double(INFINITY), double(NAN), 1e308}) {
        growthstate.radius = radius;
        text += Sliced(3, {0, 0, 1});
    }
    ExpectGolden("slices.txt", text);
}
