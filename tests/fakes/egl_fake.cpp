// A context without a window, in which every call succeeds.

#include <EGL/egl.h>
#include <GL/gl.h>
#include <GL/glext.h>

#include "fakes/recorder.h"

#define ANSWER(type, name, parameters, value)                                                                \
    extern "C" type name parameters                                                                          \
    {                                                                                                        \
        return value;                                                                                        \
    }
ANSWER(EGLDisplay, eglGetPlatformDisplay, (EGLenum, void *, const EGLAttrib *), &fakelist)
ANSWER(EGLBoolean, eglInitialize, (EGLDisplay, EGLint *, EGLint *), EGL_TRUE)
ANSWER(EGLBoolean, eglBindAPI, (EGLenum), EGL_TRUE)
ANSWER(EGLBoolean, eglChooseConfig, (EGLDisplay, const EGLint *, EGLConfig *, EGLint, EGLint *count),
       (*count = 1, EGL_TRUE))
ANSWER(EGLContext, eglCreateContext, (EGLDisplay, EGLConfig, EGLContext, const EGLint *), &fakelist)
ANSWER(EGLBoolean, eglMakeCurrent, (EGLDisplay, EGLSurface, EGLSurface, EGLContext), EGL_TRUE)
ANSWER(EGLBoolean, eglDestroyContext, (EGLDisplay, EGLContext), EGL_TRUE)
ANSWER(EGLBoolean, eglTerminate, (EGLDisplay), EGL_TRUE)
ANSWER(void, glBindFramebuffer, (GLenum, GLuint), )
ANSWER(void, glBindRenderbuffer, (GLenum, GLuint), )
ANSWER(void, glRenderbufferStorage, (GLenum, GLenum, GLsizei, GLsizei), )
ANSWER(void, glFramebufferRenderbuffer, (GLenum, GLenum, GLenum, GLuint), )
ANSWER(void, glGenFramebuffers, (GLsizei, GLuint *name), void(*name = 1))
ANSWER(void, glGenRenderbuffers, (GLsizei, GLuint *name), void(*name = 1))
ANSWER(GLenum, glCheckFramebufferStatus, (GLenum), GL_FRAMEBUFFER_COMPLETE)
ANSWER(GLenum, glGetError, (), GL_NO_ERROR)
ANSWER(void, glGetFloatv, (GLenum, GLfloat *range), void(range[1] = 255))

extern "C" void glGetIntegerv(GLenum name, GLint *limits)
{
    limits[name == GL_MAX_VIEWPORT_DIMS] = 64;
    limits[0] = 64;
}
