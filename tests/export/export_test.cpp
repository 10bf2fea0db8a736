#include "export/model.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "base/array.h"
#include "export/appearance.h"
#include "export/information.h"
#include "export/slices.h"
#include "export/text_writer.h"
#include "export/vrml.h"
#include "golden.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"
#include "surface/surface.h"

static std::string Model(int format, int mode)
{
    return Written([=](FILE *file) { EXPECT_EQ(WriteModel(file, format, mode), 1); });
}

class Exports : public testing::Test
{
protected:
    // Two roots, a fork at the first, a chain of three points and one of two; two faces.
    void SetUp() override
    {
        StartAfresh();
        camera.vp = {60, 0, 0};
        camera.vu = {0, 0, 1};
        camera.aperture = 60;
        growthstate.nroots = 2;
        growthstate.radius = 12.5;
        growthstate.maxweight = 3;
        strcpy(growthstate.rootname, "Spherical");
        ncells = 0;
        for (const Particle &particle : {Particle{{0, 0, 0}, 3, -1, 9},
                                         {{5, 0.5, -2.5}, 0, -1, 9},
                                         {{1, 0, 0}, 1.5, 0, 9},
                                         {{1.25, 0.75, 0.5}, 0, 2, 9},
                                         {{1.0 / 3, -1e-7, 1.125}, 0, 0, 9}})
            AppendToArray(&cells, &ncells, particle);
        for (const Triangle &face :
             {Triangle{{{}, {1, 0, 0}, {0, 1, 0}}, {0, 0, 1}, {}, 0, 0, 0, 0},
              {{{-20, 0.1, 3}, {2, 2, 2}, {0, 1e-7, 1e10}}, {0.6, -0.8, 0}, {}, 0, 0, 0, 0}})
            AppendToArray(&stltri, &nstltri, face);
    }
};

TEST_F(Exports, FormatsMatchExpectedFiles)
{
    const struct {
        const char *name;
        int format, mode, lines;
    } rows[] = {{"id01.pov", kFormatPOV, 0, 1000},        {"id02.pov", kFormatPOV, 1, 1000},
                {"id03.geom", kFormatGEOM, 1, 1000},      {"id04.wrl", kFormatVRML, 1, 100},
                {"id04.wrl", kFormatVRML, 2, 100},        {"id06.dxf", kFormatPointDXF, 1, 60},
                {"id07.geom", kFormatPointGEOM, 1, 1000}, {"surface.stl", kFormatSTL, 0, 1000}};
    options.surfacemode = kSurfaceSolid;
    for (const auto &row : rows)
        ExpectGolden("../export/expected/" + std::string(row.name),
                     Shortened(Model(row.format, row.mode), row.lines));
    options.surfacemode = kSurfaceOff;
    std::string text = Model(kFormatSTL, 0);
    growthstate.association = 1;              // a texture for each root
    for (ncells = 5; ncells > 0; ncells -= 3) // then roots alone
        for (const int format : {kFormatPOV, kFormatVRML, kFormatGEOM})
            for (const int mode : {kModeChains, kModeSegments})
                text += Shortened(Model(format, mode), 20);
    ExpectGolden("../export/expected/association.txt", text);
}

TEST_F(Exports, InformationMatchesExpectedText)
{
    stlmin = {-20, 0, 0};
    stlmax = {2, 2, 1e10};
    strcpy(growthstate.surfacename, "Box");
    growthstate.sourcetype = kSourceAxisMinusZ;
    growthstate.association = 1;
    stats = {
        5, {3, 1, 1, 0, 0, 0, 7}, {6.25, 4.1666666666666667, 2.7777777777777777}, {8, 12, 0, -1, -1, -1}};
    std::string text = Written(WriteInformation);
    StartAfresh();
    growthstate.bias = 1e-5;
    growthstate.sourcetype = 19;
    stats = {};
    text += Written(WriteInformation);
    ExpectGolden("../export/expected/information.txt", text);
}

TEST(VRML, NodesMatchExpectedText)
{
    const std::string text = Written([](FILE *file) {
        TextWriter out(file);
        for (const int n : {3, -5, 25})
            WRLSphere3(out, n, {1, 2, 3}, {0, 1, 0}, -2);
        for (const auto &[r1, r2] : {std::pair(1, 1), {1, 0}, {0, 1}})
            for (const bool caps : {false, true})
                WRLCone2(out, 3, caps, {}, {1, 2, 3}, {0, 1, 0}, r1, r2);
        WRLCone2(out, 3, true, {}, {0, 2, 0}, {0, 1, 0}, 1, 0.5);
        WRLCone2(out, 0, true, {}, {1, 0, 0}, {}, 1, 1);
    });
    ExpectGolden("vrml_nodes.txt", Shortened(text, 30));
}

TEST(Colour, MapsAndParticlesMatchExpectedText)
{
    std::ostringstream text;
    const auto print = [&](Colour c) { text << c.r << ' ' << c.g << ' ' << c.b << "; "; };
    for (const auto &[first, last, type] : {std::tuple(0., 1., 1), {1., 0., 1}, {2., 2., 1}, {2., 2., 0}})
        for (double v = -0.05; v <= 2; v += 0.1)
            print(GetColour(v, first, last, type));
    for (const auto &[association, nroots] : {std::pair(0, 30), {1, 0}, {1, 1}, {1, 3}, {1, 30}}) {
        StartWith({{&growthstate.nroots, 30}, {&growthstate.roottype, kRootRingX}});
        growthstate.nroots = nroots;
        growthstate.association = association;
        growthstate.maxweight = 9; // a third of it and more is red
        for (int i = 0; i < ncells; i++)
            cells[i].weight = i / 3.0;
        for (int mode = 0; mode <= 5; mode++) {
            text << '\n';
            for (const int i : {0, 1, 2, 5, 9, 20, 21, 29})
                print(ChooseColour(i, mode));
        }
    }
    ExpectGolden("colours.txt", text.str());
}

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

TEST(TextWriter, PrintsNumbersAsPrintf)
{
    std::mt19937_64 random(7);
    const auto check = [](double value) {
        char expected[64], text[kNumberLength + 1];
        snprintf(expected, sizeof expected, "%g", value);
        *FormatNumber(text, value) = '\0';
        ASSERT_STREQ(text, expected);
    };
    for (const double value : {0.0, -0.0, HUGE_VAL, -HUGE_VAL, std::nan(""), -std::nan(""), 1e5, 999999.5,
                               1e-5, 9.999995e-5, 5e-324, 1.7976931348623157e308, 0.0001})
        check(value);
    for (int i = 0; i < SARKELO_NUMBERS / 2; i++) {
        check(std::bit_cast<double>(random()));                                         // any bits
        check(std::ldexp(static_cast<double>(random() >> 11), -53) * 200 - 100);        // coordinates
        check(static_cast<double>(static_cast<int>(random() % 2000001) - 1000000) / 2); // halves: ties
    }
}

TEST(TextWriter, PrintsMoreThanItHolds)
{
    const std::string longtext(100000, 'x');
    const auto print = [&](FILE *file) {
        TextWriter out(file);
        out.Print("%d%%: <%g,%g,%g>%c\n", -7, Vector{1, -0.5, 1e10}, ';');
        out.Print("%g %g %g %s\n", Colour{0.25, 1, 0}, longtext.c_str());
    };
    EXPECT_TRUE(Written(print) == "-7%: <1,-0.5,1e+10>;\n0.25 1 0 " + longtext + '\n');
    TextWriter out(stderr);
    EXPECT_DEATH(out.Print("%g %g\n", 1.0), "");
    EXPECT_DEATH(out.Print("%g\n", 1.0, 2.0), "");
}
