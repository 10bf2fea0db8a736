// OpenGL calls that do nothing, for the cost of the program's own part of a frame.

#include <GL/gl.h>

#define NOTHING(name, ...)                                                                                   \
    extern "C" void name(__VA_ARGS__) {}

NOTHING(glBegin, GLenum)
NOTHING(glBlendFunc, GLenum, GLenum)
NOTHING(glClearColor, GLclampf, GLclampf, GLclampf, GLclampf)
NOTHING(glColor3f, GLfloat, GLfloat, GLfloat)
NOTHING(glColorMaterial, GLenum, GLenum)
NOTHING(glDisable, GLenum)
NOTHING(glEnable, GLenum)
NOTHING(glEnd)
NOTHING(glFlush)
NOTHING(glFrontFace, GLenum)
NOTHING(glLightModelfv, GLenum, const GLfloat *)
NOTHING(glLightModeli, GLenum, GLint)
NOTHING(glLightfv, GLenum, GLenum, const GLfloat *)
NOTHING(glLineWidth, GLfloat)
NOTHING(glMaterialf, GLenum, GLenum, GLfloat)
NOTHING(glMaterialfv, GLenum, GLenum, const GLfloat *)
NOTHING(glNormal3f, GLfloat, GLfloat, GLfloat)
NOTHING(glPixelStorei, GLenum, GLint)
NOTHING(glPointSize, GLfloat)
NOTHING(glPolygonMode, GLenum, GLenum)
NOTHING(glShadeModel, GLenum)
NOTHING(glTexCoord2f, GLfloat, GLfloat)
NOTHING(glVertex3f, GLfloat, GLfloat, GLfloat)
