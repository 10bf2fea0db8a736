// A context without a window, in which every call succeeds.

#include <EGL/egl.h>
#include <GL/gl.h>
#include <GL/glext.h>

#include "fakes/recorder.h"

FAKE(glBindFramebuffer, (GLenum target, GLuint name), target, name)
FAKE(glBindRenderbuffer, (GLenum target, GLuint name), target, name)
FAKE(glRenderbufferStorage, (GLenum target, GLenum format, GLsizei width, GLsizei height), target, format,
     width, height)
FAKE(glFramebufferRenderbuffer, (GLenum target, GLenum attachment, GLenum kind, GLuint name), target,
     attachment, kind, name)

extern "C" {
EGLDisplay eglGetPlatformDisplay(EGLenum, void *, const EGLAttrib *)
{
    return &fakelist;
}
EGLBoolean eglInitialize(EGLDisplay, EGLint *, EGLint *)
{
    return EGL_TRUE;
}
EGLBoolean eglBindAPI(EGLenum)
{
    return EGL_TRUE;
}
EGLBoolean eglChooseConfig(EGLDisplay, const EGLint *, EGLConfig *, EGLint, EGLint *count)
{
    *count = 1;
    return EGL_TRUE;
}
EGLContext eglCreateContext(EGLDisplay, EGLConfig, EGLContext, const EGLint *)
{
    return &fakelist;
}
EGLBoolean eglMakeCurrent(EGLDisplay, EGLSurface, EGLSurface, EGLContext)
{
    return EGL_TRUE;
}
EGLBoolean eglDestroyContext(EGLDisplay, EGLContext)
{
    return EGL_TRUE;
}
EGLBoolean eglTerminate(EGLDisplay)
{
    return EGL_TRUE;
}
void glGetIntegerv(GLenum name, GLint *limits)
{
    limits[0] = 64;
    if (name == GL_MAX_VIEWPORT_DIMS)
        limits[1] = 64;
}
void glGetFloatv(GLenum, GLfloat *range)
{
    range[0] = 1;
    range[1] = 255;
}
void glGenFramebuffers(GLsizei, GLuint *names)
{
    *names = 1;
}
void glGenRenderbuffers(GLsizei, GLuint *names)
{
    *names = 1;
}
GLenum glCheckFramebufferStatus(GLenum)
{
    return GL_FRAMEBUFFER_COMPLETE;
}
GLenum glGetError()
{
    return GL_NO_ERROR;
}
}
