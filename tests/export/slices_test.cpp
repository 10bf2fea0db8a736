#include "export/slices.h"

#include <gtest/gtest.h>

#include "base/array.h"
#include "golden.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"

// What DoSlice reports and returns, and the files, each shortened.
static std::string Sliced(Vector n, bool isblocked = false)
{
    const TemporaryDirectory directory;
    if (isblocked)
        std::filesystem::create_directory("slice_001.txt");
    testing::internal::CaptureStderr();
    const SliceResult result = DoSlice(".", 4, n, stderr);
    std::string text = Shortened(testing::internal::GetCapturedStderr(), 8);
    if (result.fault)
        text += "fault: " + result.fault.line + "; unopened: " + result.unopened + "\n";
    for (const char *name : {"slice_000.txt", "slice_001.txt", "slice_002.txt", "slice_003.txt"})
        text += std::string(name) + ":\n" + Shortened(ReadWhole(name), 6);
    return text;
}

TEST(Slices, MatchExpectedText)
{
    StartWith({{&growthstate.nroots, 3}, {&growthstate.roottype, kRootRingZ}});
    Grow(IterateSystem, 400, 10000000);
    Vector oblique = {1, -2, 0.5};
    Normalise(&oblique);
    std::string text;
    for (options.debug = 1; options.debug >= 0; options.debug--)
        for (const Vector n : {Vector{0, 0, 1}, Vector{1, 0, 0}, oblique})
            text += Sliced(n);
    options.debug = 0;
    text += Sliced({0, 0, 1}, true);
    ncells = 0; // along planes, and across one at a grazing angle
    for (const Vector &p :
         {Vector{0, 0, 0}, {2, 0, 0}, {2, 1, 1}, {3, 1, 1}, {3, 1, 1 - 1e-6}, {7, 1, 1 + 1e-6}, {7, 1, -3}})
        AppendToArray(&cells, &ncells, Particle{p, 0, ncells - 1, 0});
    for (const double radius : {2.0, 0.0, double(INFINITY), double(NAN)}) {
        growthstate.radius = radius;
        text += Sliced({0, 0, 1});
    }
    ExpectGolden("slices.txt", text);
}
