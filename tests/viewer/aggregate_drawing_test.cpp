#include "viewer/aggregate_drawing.h"

#include <GL/gl.h>
#include <gtest/gtest.h>

#include "fakes/recorder.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"

class AggregateDrawing : public testing::Test
{
protected:
    void SetUp() override
    {
        StartAfresh();
        while (ncells < kParticles)
            IterateSystem();
        ForgetCalls();
    }

    // Branches: all particles but the root.
    static constexpr int kParticles = 20;
    static constexpr int kBranches = kParticles - 1;
};

static void ExpectVertex(const Call &call, Vector p)
{
    EXPECT_EQ(static_cast<float>(call.args[0]), static_cast<float>(p.x));
    EXPECT_EQ(static_cast<float>(call.args[1]), static_cast<float>(p.y));
    EXPECT_EQ(static_cast<float>(call.args[2]), static_cast<float>(p.z));
}

TEST_F(AggregateDrawing, PointsAndLinesAreOnePrimitive)
{
    DrawDLA(kAggregatePoints);
    EXPECT_EQ(Transcript({"glBegin"}), "glBegin(0)\n");
    EXPECT_EQ(CountCalls("glColor3f"), kBranches);
    ASSERT_EQ(CountCalls("glVertex3f"), kBranches);
    ExpectVertex(CallsOf("glVertex3f")[4], cells[5].p);

    ForgetCalls();
    DrawDLA(kAggregateLines);
    EXPECT_EQ(Transcript({"glBegin"}), "glBegin(1)\n");
    EXPECT_EQ(CountCalls("glColor3f"), kBranches);
    ASSERT_EQ(CountCalls("glVertex3f"), 2 * kBranches);
    ExpectVertex(CallsOf("glVertex3f")[8], cells[5].p);
    ExpectVertex(CallsOf("glVertex3f")[9], cells[cells[5].parent].p);
}

TEST_F(AggregateDrawing, TubesHaveTenFacetsAndRadiiOfTheFlow)
{
    DrawDLA(kAggregateTubes);
    EXPECT_EQ(CountCalls("glColor3f"), kBranches);
    EXPECT_EQ(CountCalls("glBegin"), kBranches);
    ASSERT_EQ(CountCalls("glVertex3f"), kBranches * 2 * 11);
    const std::vector<Call> vertices = CallsOf("glVertex3f");
    const auto radius = [](int i) {
        return 0.01 + (0.4 - 0.01) / std::log(growthstate.maxweight + 1) * std::log(cells[i].weight + 1);
    };
    for (int i = 1; i < kParticles; i++) {
        for (int k = 0; k < 22; k++) {
            const auto &v = vertices[static_cast<size_t>((i - 1) * 22 + k)].args;
            const int end = k % 2 == 0 ? cells[i].parent : i;
            EXPECT_NEAR(VectorLength({v[0], v[1], v[2]}, cells[end].p), radius(end), 1e-5);
        }
    }
}

TEST_F(AggregateDrawing, OtherModesDrawNothing)
{
    for (const int mode : {-1, 0, 1, 6}) {
        DrawDLA(mode);
        EXPECT_TRUE(calls.empty()) << mode;
    }
    DrawDLA(4);
    EXPECT_GT(CountCalls("glEnable"), 0);
    EXPECT_EQ(CountCalls("glBegin"), 0);
    ncells = 1; // roots only: in no mode a vertex
    for (const int mode : {2, 3, 5})
        DrawDLA(mode);
    EXPECT_EQ(CountCalls("glVertex3f"), 0);
}

TEST_F(AggregateDrawing, EnvironmentOfEachMode)
{
    // In hexadecimal, as GL's header has them: 408 GL_FRONT_AND_BACK, 1B01 GL_LINE, 1B02 GL_FILL, 1D00
    // GL_FLAT, 1D01 GL_SMOOTH, B53 GL_LIGHT_MODEL_AMBIENT, 4000 GL_LIGHT0, 1203 GL_POSITION, 1200 GL_AMBIENT,
    // 1201 GL_DIFFUSE, 1202 GL_SPECULAR, B50 GL_LIGHTING, B71 GL_DEPTH_TEST, BE2 GL_BLEND, B57
    // GL_COLOR_MATERIAL.
    const std::initializer_list<const char *> modes = {"glPolygonMode", "glShadeModel", "glLightModelfv",
                                                       "glLightfv"};
    CreateEnvironment(kAggregateLines);
    EXPECT_EQ(Transcript(modes),
              "glPolygonMode(1032,6913)\nglShadeModel(7424)\nglLightModelfv(2899,1,1,1,1)\n");
    EXPECT_EQ(Transcript({"glEnable"}), "glEnable(2929)\nglEnable(3042)\nglEnable(2903)\n");
    EXPECT_EQ(CountCalls("glDisable"), 2 + 3 + 1 + 8 + 1); // dither, smoothing, culling, lights, lighting

    ForgetCalls();
    CreateEnvironment(kAggregateTubes);
    EXPECT_EQ(Transcript(modes),
              "glPolygonMode(1032,6914)\nglShadeModel(7425)\nglLightModelfv(2899,0,0,0,1)\n"
              "glLightfv(16384,4611,10,0,0,0)\nglLightfv(16384,4608,0.1,0.1,0.1,1)\n"
              "glLightfv(16384,4609,1,1,1,1)\nglLightfv(16384,4610,0,0,0,1)\n"
              "glLightfv(16385,4611,0,0,10,0)\nglLightfv(16385,4608,0.1,0.1,0.1,1)\n"
              "glLightfv(16385,4609,1,1,1,1)\nglLightfv(16385,4610,0,0,0,1)\n");
    EXPECT_EQ(Transcript({"glEnable"}), "glEnable(2929)\nglEnable(3042)\nglEnable(2903)\nglEnable(16384)\n"
                                        "glEnable(16385)\nglEnable(2896)\n");
    EXPECT_EQ(Transcript({"glMaterialf", "glMaterialfv", "glFrontFace", "glLightModeli", "glClearColor"}),
              "glClearColor(0,0,0,0)\nglFrontFace(2304)\nglMaterialfv(1032,4610,1,1,1,1)\nglMaterialf(1032,"
              "5633,40)\n"
              "glMaterialfv(1032,5632,0,0,0,1)\nglLightModeli(2897,1)\nglLightModeli(2898,0)\n");
}
