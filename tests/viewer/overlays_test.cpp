#include "viewer/overlays.h"

#include <sstream>

#include <GL/gl.h>
#include <gtest/gtest.h>

#include "analysis/box_count.h"
#include "fakes/recorder.h"
#include "growth/array.h"
#include "growth/growth_step.h"
#include "growth/scenario.h"
#include "surface/samples.h"
#include "viewer/camera.h"
#include "viewer/display.h"
#include "viewer/statistics.h"

class Overlays : public testing::Test
{
protected:
    void SetUp() override
    {
        StartAfresh();
        SetProgramDefaults();
        CameraHome();
        camera.stereo = kStereoNone;
        camera.screenwidth = 800;
        camera.screenheight = 600;
        ForgetCalls();
    }

    // The text drawn, each run of characters behind its position.
    static std::string Text()
    {
        std::ostringstream text;
        for (const Call &call : calls) {
            if (call.name == "glRasterPos2i")
                text << "\n" << call.args[0] << " " << call.args[1] << " ";
            else if (call.name == "glutBitmapCharacter")
                text << static_cast<char>(call.args[0]);
        }
        ForgetCalls();
        return text.str();
    }
};

TEST_F(Overlays, Information)
{
    DrawInfo();
    const std::string parameters =
        "\n10 574 Version: 1.02\n10 561 Seed: 12345"
        "\n10 548 Bias towards origin: 0.1% of step length\n10 535 Branch length: 1"
        "\n10 522 Stickiness: 100%\n10 509 Rotation: 0 degrees about z axis"
        "\n10 496 Branch thickness: 0.4 to 0.01"
        "\n10 483 Intersection range: 0% of branch length";
    EXPECT_EQ(Text(), parameters + "\n10 470 Seed association: Off\n10 457 Number of roots: 1"
                                   "\n10 444 Source type: Sphere\n10 431 Constraint surface: None"
                                   "\n10 405 Number of particles: 1\n10 392 Current radius: 10"
                                   "\n10 379 Particle life span: 0");
    growthstate.nroots = 3;
    growthstate.association = 1;
    growthstate.sourcetype = kSourceAxisMinusZ;
    snprintf(growthstate.rootname, sizeof growthstate.rootname, "%s", std::string(100, 'r').c_str());
    BuildSample(11);
    DrawInfo();
    EXPECT_EQ(Text(), parameters +
                          "\n10 470 Seed association: On\n10 457 Number of roots: 3"
                          "\n10 444 Root distribution range: 10\n10 431 Root distribution: " +
                          std::string(63 - 19, 'r') +
                          "\n10 418 Source type: Single axis (-z)\n10 405 Constraint surface: Box"
                          "\n10 392 Faces in constraint surface: 16\n10 379 Surface bounds"
                          "\n10 366    -28.2843 <= x <= 28.2843\n10 353    -28.2843 <= y <= 28.2843"
                          "\n10 340    -20 <= z <= 20\n10 314 Number of particles: 1"
                          "\n10 301 Current radius: 10\n10 288 Particle life span: 0");
    options.showinfo = 0;
    DrawInfo();
    EXPECT_TRUE(calls.empty());
}

TEST_F(Overlays, StatisticsFadeOverTheirDraws)
{
    stats = {};
    while (CallsOf("glColor3f").size() < 1000) { // whatever is armed from before runs out
        const size_t before = calls.size();
        DrawStatistics(0);
        if (calls.size() == before)
            break;
    }
    ForgetCalls();
    stats = {7, {1, 2, 3, 4, 5, 6, 99}, {10, 6.6666, 4}, {3, 12, 0, -1}};
    DrawStatistics(500);
    EXPECT_TRUE(calls.empty());
    DrawStatistics(0);
    EXPECT_EQ(CallsOf("glColor3f").at(0).args, (std::vector<double>{1, 1, 1}));
    EXPECT_EQ(
        Text(),
        "\n400 574 Statistics\n400 561 Branch distribution\n400 548    0:1 1:2 2:3 3:4 4:5 5:6"
        "\n400 535 Box counting\n400 522      10.000 : 3\n400 509 \n400 509       6.667 : 12\n400 496 ");
    for (int i = 0; i < 500; i++)
        DrawStatistics(0);
    EXPECT_EQ(CallsOf("glColor3f").size(), 500U);
    EXPECT_EQ(CallsOf("glColor3f").back().args, (std::vector<double>{0, 0, 0}));
    ForgetCalls();
    DrawStatistics(0);
    DrawStatistics(-1);
    EXPECT_TRUE(calls.empty());
}

TEST_F(Overlays, TextBreaksLinesAtTheSamePlace)
{
    DrawGLText(20, 100, "ab\n\rc");
    EXPECT_EQ(Transcript({"glMatrixMode", "glLoadIdentity", "glOrtho", "glRasterPos2i", "glutBitmapCharacter",
                          "glPopMatrix"}),
              "glMatrixMode(5889)\nglLoadIdentity()\nglOrtho(0,800,0,600,-1,1)\nglMatrixMode(5888)\n"
              "glLoadIdentity()\nglRasterPos2i(20,100)\nglutBitmapCharacter(97)\nglutBitmapCharacter(98)\n"
              "glRasterPos2i(20,87)\nglRasterPos2i(20,74)\nglutBitmapCharacter(99)\nglPopMatrix()"
              "\nglPopMatrix()\n");
}

TEST_F(Overlays, Extras)
{
    nseeds = 1500; // more launches than are kept
    growthstate.radius = 12;
    growthstate.nroots = 2;
    growthstate.association = 1;
    AppendToArray(&cells, &ncells, Particle{{4, 0, 0}, 0, -1, 0});
    DrawExtras();
    const auto vertices = CallsOf("glVertex3f");
    const size_t sphere = 8 * 17 * 2;
    ASSERT_EQ(vertices.size(), 3 * 73 + 6 + 1000 + 4 * sphere);
    EXPECT_EQ(vertices[0].args, (std::vector<double>{12, 0, 0}));
    EXPECT_NEAR(vertices[18].args[1], 12, 1e-6);      // a quarter on in the first circle: y
    EXPECT_NEAR(vertices[73 + 18].args[2], 12, 1e-6); // in the second: z
    EXPECT_EQ(vertices[2 * 73].args, (std::vector<double>{0, 12, 0}));
    EXPECT_NEAR(vertices[3 * 73 + 5].args[2], 14.4, 1e-6); // the third axis' end
    EXPECT_EQ(Transcript({"glColor3f"}), "glColor3f(0.5,1,0.5)\nglColor3f(1,0,0)\nglColor3f(0,1,0)\n"
                                         "glColor3f(0,0,1)\nglColor3f(1,0.5,0.5)\nglColor3f(1,0,0)\n"
                                         "glColor3f(0,1,0)\nglColor3f(1,1,1)\n");
    growthstate.nroots = 2000000; // more than there are particles
    nseeds = 3;
    ForgetCalls();
    DrawExtras();
    EXPECT_EQ(CallsOf("glVertex3f").size(), 3 * 73 + 6 + 3 + 4 * sphere);
    options.showextras = 0;
    ForgetCalls();
    DrawExtras();
    EXPECT_TRUE(calls.empty());
}

// A request shows the occupied boxes in the view, one more where one is found, and ends with the statistics.
TEST_F(Overlays, BoxesAreDrawnInTheViewWhileTheyAreCounted)
{
    Grow(IterateSystem, 30, 1000000);
    stats = {};
    Statistics();
    EXPECT_EQ(options.boxcountrequest, 1);
    EXPECT_EQ(stats.timestep, 30);
    int most = 0;
    while (options.boxcountrequest) {
        CalcBoxCount(0, 0);
        if (nboxes <= most)
            continue;
        most = nboxes;
        ForgetCalls();
        HandleDisplay();
        // The view is set again behind the information, and the boxes follow.
        size_t text = 0, view = 0, box = 0;
        for (size_t i = 0; i < calls.size(); i++) {
            if (calls[i].name == "glutBitmapCharacter" && box == 0)
                text = i;
            if (calls[i].name == "gluLookAt")
                view = i;
            if (calls[i].name == "glVertex3f" && view > text)
                box = i;
        }
        ASSERT_TRUE(text < view && view < box);
    }
    EXPECT_GT(most, 5);
    ForgetCalls();
    DrawStatistics(0);
    EXPECT_EQ(CallsOf("glColor3f").at(0).args, (std::vector<double>{1, 1, 1}));
    CalcBoxCount(1, 0); // nothing without a request
    EXPECT_EQ(options.boxcountrequest, 0);
}
