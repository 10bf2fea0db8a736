#define GL_GLEXT_PROTOTYPES

#include "viewer/off_screen.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>
#include <GL/glext.h>
#include <GL/glu.h>

#include "growth/camera_home.h"
#include "growth/state.h"
#include "viewer/aggregate_drawing.h"
#include "viewer/picture_request.h"
#include "viewer/surface_drawing.h"

// Length in pixels of a picture's shorter side up to which widths of lines and points are not scaled
constexpr double kUnscaledPictureSize = 1000;
// Most samples that are drawn at once: 128 MiB of colours and depths
constexpr int kMostSamples = 4096 * 4096;
// Particles between two calls of glFlush
constexpr int kFlushAfter = 2000;

static bool AttachBuffer(GLenum attachment, GLenum format, int width, int height);

OffScreen::~OffScreen()
{
    if (display == nullptr)
        return;
    eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    if (context != nullptr)
        eglDestroyContext(display, context);
    eglTerminate(display);
}

std::string OffScreen::Open(const PictureRequest &request)
{
    width = request.width;
    height = request.height;
    grid = static_cast<int>(std::lround(std::sqrt(request.samples)));
    std::string fault = MakeContext();
    if (fault.empty())
        fault = SetWidths(request);
    return fault.empty() ? MakeBuffer() : fault;
}

std::string OffScreen::Draw(std::vector<unsigned char> *pixels) const
{
    pixels->resize(3 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    UpdateCameraRange();
    for (int bottom = 0; bottom < grid * height; bottom += tileheight)
        for (int left = 0; left < grid * width; left += tilewidth) {
            DrawTile(left, bottom);
            ReadTile(left, bottom, pixels);
        }
    return glGetError() == GL_NO_ERROR ? "" : "the driver has failed: not enough memory?";
}

std::string OffScreen::MakeContext()
{
    setenv("EGL_LOG_LEVEL", "fatal", 0); // without messages by EGL: the results below report faults
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

// Sets the sizes of lines and points. In pictures above kUnscaledPictureSize they grow with the picture; in smaller ones
// they stay as requested.
std::string OffScreen::SetWidths(const PictureRequest &request)
{
    const double scale = grid * std::max(1.0, std::min(width, height) / kUnscaledPictureSize);
    drawingstyle.linewidth = static_cast<float>(scale * request.linewidth);
    drawingstyle.pointsize = static_cast<float>(scale * request.pointsize);
    drawingstyle.flushafter = kFlushAfter;
    border = static_cast<int>(std::max(drawingstyle.linewidth, drawingstyle.pointsize)) / 2 + 1;
    float lines[2], points[2];
    glGetFloatv(GL_ALIASED_LINE_WIDTH_RANGE, lines);
    glGetFloatv(GL_ALIASED_POINT_SIZE_RANGE, points);
    if (drawingstyle.linewidth > lines[1] || drawingstyle.pointsize > points[1])
        return "lines or points are too wide for the driver in so large a picture; fewer samples, or a "
               "smaller "
               "--line-width or --point-size, help";
    return "";
}

std::string OffScreen::MakeBuffer()
{
    GLint largest[2] = {0, 0};
    GLint most = 0;
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, largest);
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &most);
    const int columns = std::min(largest[0], most);
    const int rows = std::min({largest[1], most, kMostSamples / std::min(columns, grid * width)});
    if (grid * width <= columns && grid * height <= rows) {
        border = 0;
        tilewidth = grid * width;
        tileheight = grid * height;
    } else { // tiles of whole pixels
        tilewidth = std::min(width, (columns - 2 * border) / grid) * grid;
        tileheight = std::min(height, (rows - 2 * border) / grid) * grid;
    }
    GLuint buffer = 0;
    glGenFramebuffers(1, &buffer);
    glBindFramebuffer(GL_FRAMEBUFFER, buffer);
    const int bufferwidth = tilewidth + 2 * border;
    const int bufferheight = tileheight + 2 * border;
    if (!AttachBuffer(GL_COLOR_ATTACHMENT0, GL_RGBA8, bufferwidth, bufferheight) ||
        !AttachBuffer(GL_DEPTH_ATTACHMENT, GL_DEPTH_COMPONENT24, bufferwidth, bufferheight))
        return "the driver refuses to draw " + std::to_string(bufferwidth) + "x" +
               std::to_string(bufferheight) + " pixels";
    return "";
}

// Attaches a new render buffer to the bound frame buffer; returns false if the driver refuses it.
static bool AttachBuffer(GLenum attachment, GLenum format, int width, int height)
{
    GLuint buffer = 0;
    glGenRenderbuffers(1, &buffer);
    glBindRenderbuffer(GL_RENDERBUFFER, buffer);
    glRenderbufferStorage(GL_RENDERBUFFER, format, width, height);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, attachment, GL_RENDERBUFFER, buffer);
    return glGetError() == GL_NO_ERROR &&
           (attachment != GL_DEPTH_ATTACHMENT ||
            glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE);
}

// Draws the tile whose lower left sample is at (left, bottom), counted in samples from the lower left of the picture.
// The whole picture has the same view as a window without stereo.
void OffScreen::DrawTile(int left, int bottom) const
{
    const double vertical = camera.nearclip * std::tan(camera.aperture * kDegreesToRadians / 2);
    const double horizontal = vertical * (static_cast<double>(width) / static_cast<double>(height));
    // The coordinate of a sample on the near clipping plane, in one direction
    const auto at = [](int sample, int all, double half) {
        return -half + 2 * half * (static_cast<double>(sample) / all);
    };
    const int right = left + tilewidth, top = bottom + tileheight;
    glViewport(0, 0, tilewidth + 2 * border, tileheight + 2 * border);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glFrustum(at(left - border, grid * width, horizontal), at(right + border, grid * width, horizontal),
              at(bottom - border, grid * height, vertical), at(top + border, grid * height, vertical),
              camera.nearclip, camera.farclip);
    const Vector view = camera.vp + camera.vd;
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    gluLookAt(camera.vp.x, camera.vp.y, camera.vp.z, view.x, view.y, view.z, camera.vu.x, camera.vu.y,
              camera.vu.z);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    DrawSTL(options.surfacemode, 0);
    DrawDLA(options.dlamode);
}

// Reads the tile and stores the average of the samples of each of its pixels in *pixels.
void OffScreen::ReadTile(int left, int bottom, std::vector<unsigned char> *pixels) const
{
    const int firstx = left / grid, firsty = bottom / grid;
    const int columns = std::min(tilewidth / grid, width - firstx);
    const int rows = std::min(tileheight / grid, height - firsty);
    const int row = 3 * grid * columns; // bytes in a row of samples
    std::vector<unsigned char> samples(static_cast<std::size_t>(row) * static_cast<std::size_t>(grid));
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    for (int y = 0; y < rows; y++) {
        glReadPixels(border, border + grid * y, grid * columns, grid, GL_RGB, GL_UNSIGNED_BYTE,
                     samples.data());
        unsigned char *to = pixels->data() + 3 * (static_cast<std::size_t>(height - 1 - firsty - y) *
                                                      static_cast<std::size_t>(width) +
                                                  static_cast<std::size_t>(firstx));
        for (int k = 0; k < 3 * columns; k++) {
            const int corner = 3 * grid * (k / 3) + k % 3;
            int sum = grid * grid / 2; // rounds to the nearest average
            for (int i = 0; i < grid; i++)
                for (int j = 0; j < grid; j++)
                    sum += samples[corner + i * row + 3 * j];
            to[k] = static_cast<unsigned char>(sum / (grid * grid));
        }
    }
}
