#include "export/model.h"

#include <cstring>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "base/array.h"
#include "export/information.h"
#include "export/vrml.h"
#include "golden.h"
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

// The finer meshes and the formats that no menu has are among the hashes of tests/bits.
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
    EXPECT_EQ(Model(kFormatSTL, 0), "");
}

// Modes that no menu asks for, association, and aggregates of roots alone, and of nothing.
TEST_F(Exports, OddAggregatesMatchExpectedText)
{
    std::ostringstream text;
    nstltri = 0;
    for (const auto &[particles, nroots] : {std::pair(5, 2), {5, 3}, {2, 2}, {0, 0}}) {
        ncells = particles;
        growthstate.nroots = nroots;
        growthstate.association = nroots == 3;
        growthstate.maxweight = particles == 5 ? 3 : 0;
        for (const int format : {kFormatPOV, kFormatVRML, kFormatGEOM, kFormatPointDXF, kFormatPointGEOM})
            for (const int mode : {int{kModeChains}, int{kModeSegments}, kModeFineMesh + 1})
                text << format << ' ' << mode << ": " << Shortened(Model(format, mode) + '\n', 0);
    }
    ExpectGolden("../export/expected/odd.txt", text.str());
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
    strcpy(growthstate.surfacename, "None");
    nstltri = 0;
    growthstate.nroots = 1;
    growthstate.association = 0;
    growthstate.sourcetype = 18;
    growthstate.bias = 1e-5;
    growthstate.seed = -1;
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
        for (const bool caps : {false, true})
            for (const auto &[r1, r2] : {std::pair(1, 1), {1, 0}, {0, 1}})
                WRLCone2(out, 3, caps, {}, {1, 2, 3}, {0, 1, 0}, r1, r2);
        WRLCone2(out, 3, true, {}, {0, 2, 0}, {0, 1, 0}, 1, 1);
        WRLCone2(out, 0, true, {}, {1, 0, 0}, {}, 1, 1);
        WRLFace(out, {}, {1, 1, 1});
    });
    ExpectGolden("vrml_nodes.txt", Shortened(text, 30));
}
