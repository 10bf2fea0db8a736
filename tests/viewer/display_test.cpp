#include "viewer/display.h"

#include <GL/gl.h>
#include <gtest/gtest.h>

#include "fakes/recorder.h"
#include "growth/scenario.h"
#include "viewer/camera.h"
#include "viewer/surface_drawing.h"

// One frame in a stereo mode, from home, in a window of 800 x 600; what sets it up and what is drawn, in
// order. 1029 is GL_BACK, 1027 GL_BACK_RIGHT, 1026 GL_BACK_LEFT, 16640 colour and depth, 1 GL_LINES.
static std::string Frame(int stereo)
{
    StartAfresh();
    CameraHome();
    options.surfacemode = kSurfaceWireframe;
    DrawSTL(options.surfacemode, 1);
    camera.stereo = stereo;
    HandleReshape(800, 600);
    ForgetCalls();
    HandleDisplay();
    return Transcript({"glDrawBuffer", "glClear", "glViewport", "glFrustum", "gluLookAt", "glBegin",
                       "glCallList", "glutSwapBuffers"});
}

TEST(Display, Mono)
{
    EXPECT_EQ(Frame(kStereoNone), "glDrawBuffer(1029)\n"
                                  "glClear(16640)\n"
                                  "glViewport(0,0,800,600)\n"
                                  "glFrustum(-4.6188,4.6188,-3.4641,3.4641,6,600)\n"
                                  "gluLookAt(60,0,0,59,0,0,0,0,1)\n"
                                  "glCallList(7)\n"
                                  "glBegin(1)\n"
                                  "glutSwapBuffers()\n");
}

TEST(Display, ActiveStereoClearsAndDrawsEachBackBuffer)
{
    EXPECT_EQ(Frame(kStereoActive), "glDrawBuffer(1027)\n"
                                    "glClear(16640)\n"
                                    "glViewport(0,0,800,600)\n"
                                    "glFrustum(-4.7188,4.5188,-3.4641,3.4641,6,600)\n"
                                    "gluLookAt(60,1,0,59,1,0,0,0,1)\n"
                                    "glBegin(1)\n"
                                    "glCallList(7)\n"
                                    "glDrawBuffer(1026)\n"
                                    "glClear(16640)\n"
                                    "glViewport(0,0,800,600)\n"
                                    "glFrustum(-4.5188,4.7188,-3.4641,3.4641,6,600)\n"
                                    "gluLookAt(60,-1,0,59,-1,0,0,0,1)\n"
                                    "glBegin(1)\n"
                                    "glCallList(7)\n"
                                    "glutSwapBuffers()\n");
}

TEST(Display, DualScreenStereoHalvesTheWindow)
{
    EXPECT_EQ(Frame(kStereoDualScreen), "glDrawBuffer(1029)\n"
                                        "glClear(16640)\n"
                                        "glViewport(400,0,400,600)\n"
                                        "glFrustum(-2.4094,2.2094,-3.4641,3.4641,6,600)\n"
                                        "gluLookAt(60,1,0,59,1,0,0,0,1)\n"
                                        "glBegin(1)\n"
                                        "glCallList(7)\n"
                                        "glViewport(0,0,400,600)\n"
                                        "glFrustum(-2.2094,2.4094,-3.4641,3.4641,6,600)\n"
                                        "gluLookAt(60,-1,0,59,-1,0,0,0,1)\n"
                                        "glBegin(1)\n"
                                        "glCallList(7)\n"
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
