#include "export/model.h"

#include <cstdlib>
#include <functional>
#include <sstream>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "base/array.h"
#include "export/information.h"
#include "export/vrml.h"
#include "golden.h"
#include "growth/growth_step.h"
#include "growth/parameters.h"
#include "growth/scenario.h"
#include "surface/surface.h"

static std::string Written(const std::function<void(FILE *)> &write)
{
    char *text = nullptr;
    size_t length = 0;
    FILE *file = open_memstream(&text, &length);
    write(file);
    fclose(file);
    const std::string result(text, length);
    free(text);
    return result;
}

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
        SetProgramDefaults();
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
        AppendToArray(&stltri, &nstltri,
                      Triangle{{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {0, 0, 1}, {}, 0, 0, 0, 0});
        AppendToArray(&stltri, &nstltri,
                      Triangle{{{-20, 0.1, 3}, {2, 2, 2}, {0, 1e-7, 1e10}}, {0.6, -0.8, 0}, {}, 0, 0, 0, 0});
    }
};

// Only POV-Ray has chains; modes that a format does not know are those of a segment a particle.
TEST_F(Exports, ModesThatNoMenuAsksFor)
{
    options.surfacemode = kSurfaceSolid;
    for (const int format : {kFormatVRML, kFormatGEOM, kFormatPointDXF, kFormatPointGEOM}) {
        const std::string chains = Model(format, kModeChains);
        EXPECT_EQ(Model(format, kModeFineMesh + 1), Model(format, kModeSegments)) << format;
        const int all = std::exchange(ncells, 2); // the roots
        EXPECT_EQ(chains, Model(format, kModeSegments)) << format;
        ncells = all;
        EXPECT_NE(chains, Model(format, kModeSegments)) << format;
    }
}

// The finer meshes are among the hashes of tests/bits.
TEST_F(Exports, EveryFormatToTheByte)
{
    const struct {
        const char *name;
        int format, mode;
    } rows[] = {
        {"id01.pov", kFormatPOV, 0},        {"id02.pov", kFormatPOV, 1},  {"id03.geom", kFormatGEOM, 1},
        {"id04.wrl", kFormatVRML, 1},       {"id04.wrl", kFormatVRML, 2}, {"id06.dxf", kFormatPointDXF, 1},
        {"id07.geom", kFormatPointGEOM, 1}, {"id08.wrl", kFormatVRML, 3}, {"surface.stl", kFormatSTL, 0},
    };
    for (const auto &row : rows)
        ExpectGolden("../export/expected/" + std::string(row.name), Model(row.format, row.mode));
    options.surfacemode = kSurfaceOff;
    ExpectGolden("../export/expected/surface_none.stl", Model(kFormatSTL, 0));
}

TEST_F(Exports, AssociatedRootsHaveTexturesOfTheirOwn)
{
    nstltri = 0;
    growthstate.association = 1;
    ExpectGolden("../export/expected/id01_associated.pov", Model(kFormatPOV, 0));
    ExpectGolden("../export/expected/id02_associated.pov", Model(kFormatPOV, 1));
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
    ExpectGolden("../export/expected/information.txt", Written(WriteInformation));

    snprintf(growthstate.surfacename, sizeof growthstate.surfacename, "None");
    nstltri = 0;
    growthstate.nroots = 1;
    growthstate.association = 0;
    growthstate.sourcetype = 18;
    growthstate.bias = 1e-5;
    growthstate.seed = -1;
    stats = {};
    ExpectGolden("../export/expected/information_plain.txt", Written(WriteInformation));
}

TEST_F(Exports, RootsOnlyAndNothing)
{
    ncells = 2;
    nstltri = 0;
    growthstate.maxweight = 0;
    EXPECT_EQ(Model(kFormatGEOM, 1), "# 3D DLA by Orvandel");
    EXPECT_EQ(Model(kFormatPointDXF, 1), "0\nSECTION\n2\nENTITIES\n 0\nENDSEC\n 0\nEOF\n");
    EXPECT_EQ(Model(kFormatPointGEOM, 1), "");
    const std::string chains = Model(kFormatPOV, 0);
    EXPECT_EQ(chains, Model(kFormatPOV, 1));
    EXPECT_NE(chains.find("union {\n}\n// An instance"), std::string::npos);
    ncells = 0;
    growthstate.nroots = 0;
    const std::string bare = Model(kFormatPOV, 0);
    EXPECT_EQ(bare.find("#declare DLATEXTURE"), std::string::npos);
    EXPECT_NE(bare.find(" texture { DLATEXTURE0 }\n"), std::string::npos);
}

static std::string Node(const std::function<void(TextWriter &)> &write)
{
    return Written([&](FILE *file) {
        TextWriter out(file);
        write(out);
    });
}

TEST(VRMLPrimitives, ResolutionsAndEnds)
{
    std::string text;
    for (const int n : {3, 0, -4, -5, 25})
        text += Node([=](TextWriter &out) { WRLSphere3(out, n, {1, 2, 3}, {0, 1, 0}, -2); });
    for (const bool caps : {false, true})
        for (const auto &[r1, r2] : {std::pair(1, 1), std::pair(1, 0), std::pair(0, 1)})
            for (const Vector p2 : {Vector{0, 2, 0}, Vector{1, 2, 3}})
                text += Node([=](TextWriter &out) { WRLCone2(out, 3, caps, {}, p2, {0, 1, 0}, r1, r2); });
    text += Node([](TextWriter &out) { WRLFace(out, {}, {1, 1, 1}); });
    text += Node([](TextWriter &out) { WRLCone2(out, 0, true, {}, {1, 0, 0}, {}, 1, 1); });
    ExpectGolden("vrml_nodes.txt", text);
}
