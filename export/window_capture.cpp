#include "export/window_capture.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>

#include <GL/gl.h>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "base/output_file.h"
#include "growth/state.h"
#include "image/bitmap.h"

// Largest size of a file name, with the terminating zero
constexpr int kNameSize = 32;

// The number of the next numbered capture.
static int counter = 0;
// Whether the last capture failed, which has been reported
static bool reported = false;

namespace
{
struct FileName {
    char text[kNameSize];
};
} // namespace

static bool DumpBuffer(GLenum buffer, const char *prefix, const char *name, int width, int height, int code,
                       Pixel *pixels);
static FileName NameFile(const char *prefix, const char *name, int code);
static const std::string &FindSeries();
static void Report(const char *fault);

int WindowDump(const char *name, int width, int height, int stereo, int code)
{
    Pixel *pixels = Create_Bitmap(width, height);
    if (pixels == nullptr) {
        Report("WindowDump - Failed to allocate memory for image\n");
        reported = true;
        return 0;
    }
    glFinish();
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    const bool saved = DumpBuffer(GL_BACK_LEFT, stereo ? "L_" : "", name, width, height, code, pixels) &&
                       (!stereo || DumpBuffer(GL_BACK_RIGHT, "R_", name, width, height, code, pixels));
    Destroy_Bitmap(pixels);
    reported = !saved;
    if (!saved)
        return 0;
    counter++;
    return 1;
}

void EndCaptures()
{
    reported = false;
}

static bool DumpBuffer(GLenum buffer, const char *prefix, const char *name, int width, int height, int code,
                       Pixel *pixels)
{
    FileName path = NameFile(prefix, name, code);
    while (*name == '\0' && access(path.text, R_OK) == 0) {
        counter++;
        path = NameFile(prefix, name, code);
    }
    OutputFile file(path.text);
    const bool opened = file.Stream() != nullptr;
    if (opened) {
        glReadBuffer(buffer);
        glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
        Write_Bitmap(file.Stream(), pixels, width, height, code);
    }
    const Fault fault = file.Finish();
    if (!fault)
        return true;
    Report((fault.line + "\n").c_str());
    if (!opened)
        Report("WindowDump - Failed to open file for window dump\n");
    errno = file.Reason();
    return false;
}

static FileName NameFile(const char *prefix, const char *name, int code)
{
    // Indexed by the absolute value of the code. With a code that has no extension, the file name ends with the dot.
    static const char *const kExtensions[] = {"",    "tga", "ppm", "rgb", "raw", "tif", "eps",
                                              "eps", "raw", "bmp", "",    "tga", "tga", "tga"};
    const unsigned format = static_cast<unsigned>(std::abs(code));
    const char *extension = format < std::size(kExtensions) ? kExtensions[format] : "";
    FileName path;
    if (*name == '\0')
        snprintf(path.text, sizeof path.text, "%s%s%04d.%s", prefix, FindSeries().c_str(), counter,
                 extension);
    else
        snprintf(path.text, sizeof path.text, "%s%s.%s", prefix, name, extension);
    return path;
}

// The prefix of this window's numbers: empty, or the process id and a dash if another running view window already
// captures to this directory.
static const std::string &FindSeries()
{
    static const std::string series = [] {
        const int folder = viewwindow ? open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC) : -1;
        // The lock lasts as long as the program.
        const bool taken = folder >= 0 && flock(folder, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
        return taken ? std::to_string(getpid()) + "-" : std::string();
    }();
    return series;
}

static void Report(const char *fault)
{
    if (!reported)
        fputs(fault, stderr);
}
