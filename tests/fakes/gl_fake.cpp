#include <GL/glu.h>

#include "fakes/recorder.h"

// Functions whose arguments are all numbers.
#define FAKE0(name)                                                                                          \
    extern "C" void name()                                                                                   \
    {                                                                                                        \
        Record(#name);                                                                                       \
    }
#define FAKE1(name, A)                                                                                       \
    extern "C" void name(A a)                                                                                \
    {                                                                                                        \
        Record(#name, {static_cast<double>(a)});                                                             \
    }
#define FAKE2(name, A, B)                                                                                    \
    extern "C" void name(A a, B b)                                                                           \
    {                                                                                                        \
        Record(#name, {static_cast<double>(a), static_cast<double>(b)});                                     \
    }
#define FAKE3(name, A)                                                                                       \
    extern "C" void name(A a, A b, A c)                                                                      \
    {                                                                                                        \
        Record(#name, {static_cast<double>(a), static_cast<double>(b), static_cast<double>(c)});             \
    }

FAKE1(glBegin, GLenum)
FAKE0(glEnd)
FAKE3(glVertex3f, GLfloat)
FAKE3(glNormal3f, GLfloat)
FAKE3(glColor3f, GLfloat)
FAKE2(glTexCoord2f, GLfloat, GLfloat)
FAKE1(glEnable, GLenum)
FAKE1(glDisable, GLenum)
FAKE1(glClear, GLbitfield)
FAKE1(glDrawBuffer, GLenum)
FAKE1(glMatrixMode, GLenum)
FAKE0(glLoadIdentity)
FAKE2(glBlendFunc, GLenum, GLenum)
FAKE2(glPixelStorei, GLenum, GLint)
FAKE1(glLineWidth, GLfloat)
FAKE1(glPointSize, GLfloat)
FAKE1(glFrontFace, GLenum)
FAKE2(glPolygonMode, GLenum, GLenum)
FAKE1(glShadeModel, GLenum)
FAKE2(glColorMaterial, GLenum, GLenum)
FAKE2(glLightModeli, GLenum, GLint)
FAKE2(glNewList, GLuint, GLenum)
FAKE0(glEndList)
FAKE0(glPopMatrix)
FAKE2(glRasterPos2i, GLint, GLint)
FAKE0(glFinish)
FAKE1(glReadBuffer, GLenum)
FAKE1(glCallList, GLuint)
FAKE2(glDeleteLists, GLuint, GLsizei)

extern "C" GLuint glGenLists(GLsizei)
{
    Record("glGenLists");
    return fakelist;
}

extern "C" void glClearColor(GLfloat r, GLfloat g, GLfloat b, GLfloat a)
{
    Record("glClearColor", {r, g, b, a});
}

extern "C" void glViewport(GLint x, GLint y, GLsizei width, GLsizei height)
{
    Record("glViewport", {double(x), double(y), double(width), double(height)});
}

extern "C" void glOrtho(GLdouble l, GLdouble r, GLdouble b, GLdouble t, GLdouble n, GLdouble f)
{
    Record("glOrtho", {l, r, b, t, n, f});
}

extern "C" void glFrustum(GLdouble l, GLdouble r, GLdouble b, GLdouble t, GLdouble n, GLdouble f)
{
    Record("glFrustum", {l, r, b, t, n, f});
}

extern "C" void glMaterialf(GLenum face, GLenum name, GLfloat value)
{
    Record("glMaterialf", {double(face), double(name), value});
}

extern "C" void glMaterialfv(GLenum face, GLenum name, const GLfloat *v)
{
    Record("glMaterialfv", {double(face), double(name), v[0], v[1], v[2], v[3]});
}

extern "C" void glLightModelfv(GLenum name, const GLfloat *v)
{
    Record("glLightModelfv", {double(name), v[0], v[1], v[2], v[3]});
}

extern "C" void glLightfv(GLenum light, GLenum name, const GLfloat *v)
{
    Record("glLightfv", {double(light), double(name), v[0], v[1], v[2], v[3]});
}

extern "C" void gluLookAt(GLdouble ex, GLdouble ey, GLdouble ez, GLdouble cx, GLdouble cy, GLdouble cz,
                          GLdouble ux, GLdouble uy, GLdouble uz)
{
    Record("gluLookAt", {ex, ey, ez, cx, cy, cz, ux, uy, uz});
}

extern "C" void glReadPixels(GLint x, GLint y, GLsizei width, GLsizei height, GLenum format, GLenum type,
                             void *)
{
    Record("glReadPixels",
           {double(x), double(y), double(width), double(height), double(format), double(type)});
}
