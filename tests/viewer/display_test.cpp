#include "viewer/display.h"

#include <GL/gl.h>
#include <gtest/gtest.h>

#include "fakes/recorder.h"
#include "growth/scenario.h"
#include "viewer/camera.h"
#include "viewer/overlays.h"
#include "viewer/surface_drawing.h"

// One frame in a stereo mode, from home, in a window of 800 x 600; what sets it up and what is drawn, in
// order. 1029 is GL_BACK, 1027 GL_BACK_RIGHT, 1026 GL_BACK_LEFT, 16640 colour and depth. What is drawn: the
// surface's list, lines (the aggregate), a strip (the extras' circles), lines (their axes), text at the left
// and at the centre.
static std::string Frame(int stereo)
{
    StartAfresh();
    SetProgramDefaults();
    CameraHome();
    DrawSTL(options.surfacemode, 1);
    camera.stereo = stereo;
    HandleReshape(800, 600);
    DrawStatistics(10);
    ForgetCalls();
    HandleDisplay();
    std::string frame, last;
    for (const Call &call : calls) {
        std::string what = Text(call) + "\n";
        if (call.name == "glBegin")
            what = call.args[0] == GL_LINES ? "lines\n" : call.args[0] == GL_LINE_STRIP ? "strip\n" : "";
        else if (call.name == "glRasterPos2i")
            what = "text at " + std::to_string(static_cast<int>(call.args[0])) + "\n";
        else if (std::string("glDrawBuffer glClear glViewport glFrustum gluLookAt glCallList glutSwapBuffers")
                     .find(call.name) == std::string::npos)
            what.clear();
        if (what != last && !what.empty())
            frame += last = what;
    }
    return frame;
}

TEST(Display, Mono)
{
    EXPECT_EQ(Frame(kStereoNone), "glDrawBuffer(1029)\n"
                                  "glClear(16640)\n"
                                  "glViewport(0,0,800,600)\n"
                                  "glFrustum(-4.6188,4.6188,-3.4641,3.4641,6,600)\n"
                                  "gluLookAt(60,0,0,59,0,0,0,0,1)\n"
                                  "glCallList(7)\n"
                                  "lines\nstrip\nlines\ntext at 10\ntext at 400\n"
                                  "glutSwapBuffers()\n");
}

TEST(Display, ActiveStereoClearsAndDrawsEachBackBuffer)
{
    EXPECT_EQ(Frame(kStereoActive), "glDrawBuffer(1027)\n"
                                    "glClear(16640)\n"
                                    "glViewport(0,0,800,600)\n"
                                    "glFrustum(-4.7188,4.5188,-3.4641,3.4641,6,600)\n"
                                    "gluLookAt(60,1,0,59,1,0,0,0,1)\n"
                                    "lines\n"
                                    "glCallList(7)\nstrip\nlines\ntext at 10\ntext at 400\n"
                                    "glDrawBuffer(1026)\n"
                                    "glClear(16640)\n"
                                    "glViewport(0,0,800,600)\n"
                                    "glFrustum(-4.5188,4.7188,-3.4641,3.4641,6,600)\n"
                                    "gluLookAt(60,-1,0,59,-1,0,0,0,1)\n"
                                    "lines\n"
                                    "glCallList(7)\nstrip\nlines\ntext at 10\ntext at 400\n"
                                    "glutSwapBuffers()\n");
}

TEST(Display, DualScreenStereoHalvesTheWindow)
{
    EXPECT_EQ(Frame(kStereoDualScreen), "glDrawBuffer(1029)\n"
                                        "glClear(16640)\n"
                                        "glViewport(400,0,400,600)\n"
                                        "glFrustum(-2.4094,2.2094,-3.4641,3.4641,6,600)\n"
                                        "gluLookAt(60,1,0,59,1,0,0,0,1)\n"
                                        "lines\n"
                                        "glCallList(7)\nstrip\nlines\ntext at 10\ntext at 400\n"
                                        "glViewport(0,0,400,600)\n"
                                        "glFrustum(-2.2094,2.4094,-3.4641,3.4641,6,600)\n"
                                        "gluLookAt(60,-1,0,59,-1,0,0,0,1)\n"
                                        "lines\n"
                                        "glCallList(7)\nstrip\nlines\ntext at 10\ntext at 400\n"
                                        "glutSwapBuffers()\n");
}

TEST(Display, RangesFollowTheViewPoint)
{
    Frame(kStereoNone);
    camera.vp = {0, 30, 0};
    camera.nearclip = camera.farclip = camera.eyesep = camera.focallength = -1;
    HandleDisplay();
    EXPECT_EQ(camera.focallength, 30);
    EXPECT_EQ(camera.eyesep, 1);
    EXPECT_EQ(camera.nearclip, 3);
    EXPECT_EQ(camera.farclip, 300);
    HandleReshape(300, 0); // no crash; what it shows is GL's affair
    HandleDisplay();
    EXPECT_EQ(camera.screenwidth, 300);
}
