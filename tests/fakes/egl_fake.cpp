// A context without a window, in which every call succeeds.

#define GL_GLEXT_PROTOTYPES

#include <EGL/egl.h>
#include <GL/gl.h>
#include <GL/glext.h>

#include "fakes/recorder.h"

FAKE_ANSWER(EGLDisplay, eglGetPlatformDisplay, (EGLenum, void *, const EGLAttrib *), &fakelist)
FAKE_ANSWER(EGLBoolean, eglInitialize, (EGLDisplay, EGLint *, EGLint *), EGL_TRUE)
FAKE_ANSWER(EGLBoolean, eglBindAPI, (EGLenum), EGL_TRUE)
FAKE_ANSWER(EGLBoolean, eglChooseConfig, (EGLDisplay, const EGLint *, EGLConfig *, EGLint, EGLint *count),
            (*count = 1, EGL_TRUE))
FAKE_ANSWER(EGLContext, eglCreateContext, (EGLDisplay, EGLConfig, EGLContext, const EGLint *), &fakelist)
FAKE_ANSWER(EGLBoolean, eglMakeCurrent, (EGLDisplay, EGLSurface, EGLSurface, EGLContext), EGL_TRUE)
FAKE_ANSWER(EGLBoolean, eglDestroyContext, (EGLDisplay, EGLContext), EGL_TRUE)
FAKE_ANSWER(EGLBoolean, eglTerminate, (EGLDisplay), EGL_TRUE)
FAKE(glBindFramebuffer, (GLenum, GLuint))
FAKE(glBindRenderbuffer, (GLenum, GLuint))
FAKE(glRenderbufferStorage, (GLenum, GLenum, GLsizei, GLsizei))
FAKE(glFramebufferRenderbuffer, (GLenum, GLenum, GLenum, GLuint))
FAKE_ANSWER(void, glGenFramebuffers, (GLsizei, GLuint *name), void(*name = 1))
FAKE_ANSWER(void, glGenRenderbuffers, (GLsizei, GLuint *name), void(*name = 1))
FAKE_ANSWER(GLenum, glCheckFramebufferStatus, (GLenum), GL_FRAMEBUFFER_COMPLETE)
FAKE_ANSWER(GLenum, glGetError, (), GL_NO_ERROR)
FAKE_ANSWER(void, glGetFloatv, (GLenum, GLfloat *range), void(range[1] = 255))
FAKE_ANSWER(void, glGetIntegerv, (GLenum name, GLint *limits),
            void(limits[0] = limits[name == GL_MAX_VIEWPORT_DIMS] = 64))
