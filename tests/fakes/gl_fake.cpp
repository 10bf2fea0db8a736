#include <GL/glu.h>

#include "fakes/recorder.h"

FAKE(glBegin, (GLenum mode), mode)
FAKE(glEnd, ())
FAKE(glVertex3f, (GLfloat x, GLfloat y, GLfloat z), x, y, z)
FAKE(glNormal3f, (GLfloat x, GLfloat y, GLfloat z), x, y, z)
FAKE(glColor3f, (GLfloat r, GLfloat g, GLfloat b), r, g, b)
FAKE(glTexCoord2f, (GLfloat s, GLfloat t), s, t)
FAKE(glEnable, (GLenum what), what)
FAKE(glDisable, (GLenum what), what)
FAKE(glClear, (GLbitfield mask), mask)
FAKE(glClearColor, (GLfloat r, GLfloat g, GLfloat b, GLfloat a), r, g, b, a)
FAKE(glDrawBuffer, (GLenum buffer), buffer)
FAKE(glMatrixMode, (GLenum mode), mode)
FAKE(glLoadIdentity, ())
FAKE(glPopMatrix, ())
FAKE(glBlendFunc, (GLenum source, GLenum target), source, target)
FAKE(glPixelStorei, (GLenum name, GLint value), name, value)
FAKE(glLineWidth, (GLfloat width), width)
FAKE(glPointSize, (GLfloat size), size)
FAKE(glFrontFace, (GLenum mode), mode)
FAKE(glPolygonMode, (GLenum face, GLenum mode), face, mode)
FAKE(glShadeModel, (GLenum mode), mode)
FAKE(glColorMaterial, (GLenum face, GLenum mode), face, mode)
FAKE(glLightModeli, (GLenum name, GLint value), name, value)
FAKE(glNewList, (GLuint list, GLenum mode), list, mode)
FAKE(glEndList, ())
FAKE(glCallList, (GLuint list), list)
FAKE(glDeleteLists, (GLuint list, GLsizei range), list, range)
FAKE(glRasterPos2i, (GLint x, GLint y), x, y)
FAKE(glFinish, ())
FAKE(glFlush, ())
FAKE(glReadBuffer, (GLenum buffer), buffer)
FAKE(glViewport, (GLint x, GLint y, GLsizei width, GLsizei height), x, y, width, height)
FAKE(glOrtho, (GLdouble l, GLdouble r, GLdouble b, GLdouble t, GLdouble n, GLdouble f), l, r, b, t, n, f)
FAKE(glFrustum, (GLdouble l, GLdouble r, GLdouble b, GLdouble t, GLdouble n, GLdouble f), l, r, b, t, n, f)
FAKE(glMaterialf, (GLenum face, GLenum name, GLfloat value), face, name, value)
FAKE(glMaterialfv, (GLenum face, GLenum name, const GLfloat *v), face, name, v[0], v[1], v[2], v[3])
FAKE(glLightModelfv, (GLenum name, const GLfloat *v), name, v[0], v[1], v[2], v[3])
FAKE(glLightfv, (GLenum light, GLenum name, const GLfloat *v), light, name, v[0], v[1], v[2], v[3])
FAKE(gluLookAt,
     (GLdouble ex, GLdouble ey, GLdouble ez, GLdouble cx, GLdouble cy, GLdouble cz, GLdouble ux, GLdouble uy,
      GLdouble uz),
     ex, ey, ez, cx, cy, cz, ux, uy, uz)
FAKE(glReadPixels, (GLint x, GLint y, GLsizei width, GLsizei height, GLenum format, GLenum type, void *), x,
     y, width, height, format, type)

extern "C" GLuint glGenLists(GLsizei)
{
    Record("glGenLists");
    return fakelist;
}
