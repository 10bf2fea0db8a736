#define GL_GLEXT_PROTOTYPES

#include "viewer/off_screen.h"

#include <algorithm>

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>
#include <GL/glext.h>

#include "growth/state.h"
#include "viewer/display.h"

static bool AttachBuffer(GLenum attachment, GLenum format, int width, int height, int samples);

OffScreen::~OffScreen()
{
    if (display == nullptr)
        return;
    eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    if (context != nullptr)
        eglDestroyContext(display, context);
    eglTerminate(display);
}

std::string OffScreen::Open(int width, int height, int samples)
{
    columns = width;
    rows = height;
    std::string fault = MakeContext();
    return fault.empty() ? MakeBuffers(samples) : fault;
}

std::string OffScreen::MakeContext()
{
    EGLDisplay surfaceless =
        eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    if (surfaceless == EGL_NO_DISPLAY || !eglInitialize(surfaceless, nullptr, nullptr))
        return "there is no EGL that draws without a screen";
    display = surfaceless;
    const EGLint wanted[] = {EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_SURFACE_TYPE, EGL_DONT_CARE, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    if (eglBindAPI(EGL_OPENGL_API) && eglChooseConfig(display, wanted, &config, 1, &count) && count > 0)
        context = eglCreateContext(display, config, EGL_NO_CONTEXT, nullptr);
    if (context == nullptr || !eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, context))
        return "EGL has no OpenGL";
    return "";
}

std::string OffScreen::MakeBuffers(int samples)
{
    GLint largest[2] = {0, 0};
    GLint most = 0;
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, largest);
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &most);
    if (columns > std::min(largest[0], most) || rows > std::min(largest[1], most))
        return "the driver draws at most " + std::to_string(std::min(largest[0], most)) + "x" +
               std::to_string(std::min(largest[1], most)) + " pixels";
    glGetIntegerv(GL_MAX_SAMPLES, &most);
    if (samples > most)
        return "the driver has at most " + std::to_string(most) + " samples a pixel";
    glGenFramebuffers(1, &resolved);
    glBindFramebuffer(GL_FRAMEBUFFER, resolved);
    bool complete = AttachBuffer(GL_COLOR_ATTACHMENT0, GL_RGBA8, columns, rows, 0) &&
                    AttachBuffer(GL_DEPTH_ATTACHMENT, GL_DEPTH_COMPONENT24, columns, rows, 0);
    drawn = resolved;
    if (samples > 1) {
        glGenFramebuffers(1, &drawn);
        glBindFramebuffer(GL_FRAMEBUFFER, drawn);
        complete = complete && AttachBuffer(GL_COLOR_ATTACHMENT0, GL_RGBA8, columns, rows, samples) &&
                   AttachBuffer(GL_DEPTH_ATTACHMENT, GL_DEPTH_COMPONENT24, columns, rows, samples);
    }
    if (!complete)
        return "the driver refuses " + std::to_string(columns) + "x" + std::to_string(rows) +
               " pixels with " + std::to_string(samples) + " samples each";
    return "";
}

// Gives the frame buffer that is bound a buffer; false where the driver refuses it.
static bool AttachBuffer(GLenum attachment, GLenum format, int width, int height, int samples)
{
    GLuint buffer = 0;
    glGenRenderbuffers(1, &buffer);
    glBindRenderbuffer(GL_RENDERBUFFER, buffer);
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, format, width, height);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, attachment, GL_RENDERBUFFER, buffer);
    return glGetError() == GL_NO_ERROR &&
           (attachment != GL_DEPTH_ATTACHMENT ||
            glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE);
}

std::vector<unsigned char> OffScreen::Draw() const
{
    glBindFramebuffer(GL_FRAMEBUFFER, drawn);
    DrawBareFrame(); // what it says of the window's buffers is refused, and the frame buffer's stay
    glBindFramebuffer(GL_READ_FRAMEBUFFER, drawn);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, resolved);
    if (drawn != resolved)
        glBlitFramebuffer(0, 0, columns, rows, 0, 0, columns, rows, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, resolved);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    const std::size_t row = 3 * static_cast<std::size_t>(columns);
    std::vector<unsigned char> pixels(row * static_cast<std::size_t>(rows));
    for (int y = 0; y < rows; y++)
        glReadPixels(0, rows - 1 - y, columns, 1, GL_RGB, GL_UNSIGNED_BYTE,
                     pixels.data() + row * static_cast<std::size_t>(y));
    while (glGetError() != GL_NO_ERROR) {
    }
    return pixels;
}
