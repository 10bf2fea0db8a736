#include "viewer/surface_drawing.h"

#include <gtest/gtest.h>

#include "fakes/recorder.h"
#include "growth/scenario.h"
#include "surface/surface.h"

static std::string Draw(int mode, int rebuild)
{
    ForgetCalls();
    DrawSTL(mode, rebuild);
    return Transcript({"glGenLists", "glNewList", "glEndList", "glCallList", "glDeleteLists", "glColor3f",
                       "glBegin", "glEnd"});
}

// In this order: the list is the program's only one. 4864 is GL_COMPILE, 4 GL_TRIANGLES, 0 GL_POINTS.
TEST(SurfaceDrawing, OneListPerSurfaceAndMode)
{
    StartAfresh();
    SetBoxSurface(4, false);
    DrawSTL(kSurfaceWireframe, 1); // whatever was before
    fakelist = 3;
    DrawSTL(kSurfaceWireframe, 1);
    EXPECT_EQ(Draw(kSurfaceOff, 1), "");
    EXPECT_EQ(Draw(0, 1) + Draw(6, 1), "");
    EXPECT_TRUE(calls.empty()); // not even the GL state is touched
    EXPECT_EQ(Draw(kSurfaceWireframe, 0), "glCallList(3)\n");
    fakelist = 0;
    EXPECT_EQ(Draw(kSurfaceSolid, 1), "glDeleteLists(3,1)\nglGenLists()\nglNewList(0,4864)\n"
                                      "glColor3f(0.5,0.5,0.5)\nglBegin(4)\nglEnd()\nglEndList()\n");
    EXPECT_EQ(CountCalls("glVertex3f"), 36);
    EXPECT_EQ(CountCalls("glNormal3f"), 36);
    EXPECT_EQ(Draw(kSurfaceSolid, 0), "glCallList(0)\n"); // 0 is replayed but never deleted
    fakelist = 7;
    EXPECT_EQ(Draw(kSurfaceMidpoints, 1), "glGenLists()\nglNewList(7,4864)\n"
                                          "glColor3f(1,1,1)\nglBegin(0)\nglEnd()\nglEndList()\n");
    EXPECT_EQ(CountCalls("glVertex3f"), 12);
    EXPECT_EQ(CallsOf("glVertex3f").at(0).args[0], static_cast<float>(stltri[0].midpoint.x));
    Draw(kSurfaceVertices, 1);
    EXPECT_EQ(CountCalls("glVertex3f"), 36);
    EXPECT_EQ(CountCalls("glNormal3f"), 0);
    nstltri = 0;
    EXPECT_EQ(Draw(kSurfaceWireframe, 1), "glDeleteLists(7,1)\nglGenLists()\nglNewList(7,4864)\n"
                                          "glColor3f(0.5,0.5,0.5)\nglBegin(4)\nglEnd()\nglEndList()\n");
}
