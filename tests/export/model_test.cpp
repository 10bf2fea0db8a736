#include "export/model.h"

#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "base/array.h"
#include "export/information.h"
#include "export/vrml.h"
#include "golden.h"
#include "growth/scenario.h"
#include "surface/surface.h"
#include "temporary_file.h"

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
        camera = {};
        camera.vp = {60, 0, 0};
        camera.vu = {0, 0, 1};
        camera.aperture = 60;
        growthstate.nroots = 2;
        growthstate.radius = 12.5;
        growthstate.maxweight = 3;
        snprintf(growthstate.rootname, sizeof growthstate.rootname, "Spherical");
        const Particle particles[] = {
            {{0, 0, 0}, 3, -1, 9},
            {{5, 0.5, -2.5}, 0, -1, 9},
            {{1, 0, 0}, 1.5, 0, 9},
            {{1.25, 0.75, 0.5}, 0, 2, 9},
            {{0.3333333333333333, -1e-7, 1.125}, 0, 0, 9},
        };
        ncells = 0;
        for (const Particle &particle : particles)
            AppendToArray(&cells, &ncells, particle);
        const Triangle faces[] = {
            {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {0, 0, 1}, {}, 0, 0, 0, 0},
            {{{-20, 0.1, 3}, {2, 2, 2}, {0, 1e-7, 1e10}}, {0.6, -0.8, 0}, {}, 0, 0, 0, 0}};
        for (const Triangle &face : faces)
            AppendToArray(&stltri, &nstltri, face);
    }
};

// The finer meshes and the formats that no menu has are among the hashes of tests/bits.
TEST_F(Exports, EveryFormatToTheByte)
{
    const struct {
        const char *name;
        int format, mode, association, lines;
    } rows[] = {{"id01.pov", kFormatPOV, 0, 0, 1000},     {"id02.pov", kFormatPOV, 1, 0, 1000},
                {"associated.pov", kFormatPOV, 1, 1, 70}, {"id03.geom", kFormatGEOM, 1, 0, 1000},
                {"id04.wrl", kFormatVRML, 1, 0, 100},     {"id04.wrl", kFormatVRML, 2, 0, 100},
                {"id06.dxf", kFormatPointDXF, 1, 0, 60},  {"id07.geom", kFormatPointGEOM, 1, 0, 1000},
                {"surface.stl", kFormatSTL, 0, 0, 1000}};
    options.surfacemode = kSurfaceSolid;
    for (const auto &row : rows) {
        growthstate.association = row.association;
        ExpectGolden("../export/expected/" + std::string(row.name),
                     Shortened(Model(row.format, row.mode), row.lines));
    }
    options.surfacemode = kSurfaceOff;
    EXPECT_EQ(Model(kFormatSTL, 0), "");
}

// Only POV-Ray has chains; modes that a format does not know are those of a segment a particle.
TEST_F(Exports, ModesThatNoMenuAsksFor)
{
    for (const int format : {kFormatVRML, kFormatGEOM, kFormatPointDXF, kFormatPointGEOM}) {
        const std::string chains = Model(format, kModeChains), segments = Model(format, kModeSegments);
        EXPECT_EQ(Model(format, kModeFineMesh + 1), segments) << format;
        const int all = std::exchange(ncells, 2); // the roots
        EXPECT_EQ(chains, Model(format, kModeSegments)) << format;
        EXPECT_NE(chains, segments) << format;
        ncells = all;
    }
}

TEST_F(Exports, RootsOnlyAndNothing)
{
    ncells = 2;
    nstltri = 0;
    growthstate.maxweight = 0;
    EXPECT_EQ(Model(kFormatGEOM, 1), "# 3D DLA by Orvandel");
    EXPECT_EQ(Model(kFormatPointDXF, 1), "0\nSECTION\n2\nENTITIES\n 0\nENDSEC\n 0\nEOF\n");
    const std::string chains = Model(kFormatPOV, 0);
    EXPECT_EQ(chains, Model(kFormatPOV, 1));
    EXPECT_NE(chains.find("union {\n}\n// An instance"), std::string::npos);
    ncells = 0;
    growthstate.nroots = 0;
    const std::string bare = Model(kFormatPOV, 0);
    EXPECT_EQ(bare.find("#declare DLATEXTURE"), std::string::npos);
    EXPECT_NE(bare.find(" texture { DLATEXTURE0 }\n"), std::string::npos);
}

TEST_F(Exports, Information)
{
    stlmin = {-20, 0, 0};
    stlmax = {2, 2, 1e10};
    snprintf(growthstate.surfacename, sizeof growthstate.surfacename, "Box");
    growthstate.sourcetype = kSourceAxisMinusZ;
    growthstate.association = 1;
    stats = {
        5, {3, 1, 1, 0, 0, 0, 7}, {6.25, 4.1666666666666667, 2.7777777777777777}, {8, 12, 0, -1, -1, -1}};
    std::string text = Written(WriteInformation);
    snprintf(growthstate.surfacename, sizeof growthstate.surfacename, "None");
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

TEST(VRML, MeshesOfOddResolutionsAndCones)
{
    const std::string text = Written([](FILE *file) {
        TextWriter out(file);
        for (const int n : {3, -5, 25})
            WRLSphere3(out, n, {1, 2, 3}, {0, 1, 0}, -2);
        for (const bool caps : {false, true})
            for (const auto &[r1, r2] : {std::pair(1, 1), std::pair(1, 0), std::pair(0, 1)})
                WRLCone2(out, 3, caps, {}, {1, 2, 3}, {0, 1, 0}, r1, r2);
        WRLCone2(out, 3, true, {}, {0, 2, 0}, {0, 1, 0}, 1, 1);
        WRLCone2(out, 0, true, {}, {1, 0, 0}, {}, 1, 1);
        WRLFace(out, {}, {1, 1, 1});
    });
    ExpectGolden("vrml_nodes.txt", Shortened(text, 30));
}
