#include "viewer/surface_drawing.h"

#include <GL/gl.h>

#include "growth/state.h"
#include "surface/surface.h"
#include "toolkit/wait_cursor.h"
#include "viewer/aggregate_drawing.h"
#include "viewer/gl_primitives.h"

static void DrawFaces(int mode);

void DrawSTL(int mode, int rebuild)
{
    static int listindex = -1;

    if (mode < kSurfaceWireframe || mode > kSurfaceSolid)
        return;
    CreateEnvironment(mode);
    if (!rebuild && listindex >= 0) {
        glCallList(static_cast<GLuint>(listindex));
        return;
    }
    const WaitCursor wait;
    if (listindex > 0)
        glDeleteLists(static_cast<GLuint>(listindex), 1);
    listindex = static_cast<int>(glGenLists(1));
    glNewList(static_cast<GLuint>(listindex), GL_COMPILE);
    DrawFaces(mode);
    glEndList();
}

static void DrawFaces(int mode)
{
    const bool points = mode == kSurfaceMidpoints || mode == kSurfaceVertices;
    const float grey = points ? 1.0F : 0.5F;
    glColor3f(grey, grey, grey);
    glBegin(points ? GL_POINTS : GL_TRIANGLES);
    for (int i = 0; i < nstltri; i++) {
        if (mode == kSurfaceMidpoints) {
            SetVertex(stltri[i].midpoint);
            continue;
        }
        for (const Vector &corner : stltri[i].p) {
            if (mode == kSurfaceSolid)
                SetNormal(stltri[i].n);
            SetVertex(corner);
        }
    }
    glEnd();
}
