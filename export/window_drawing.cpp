#include "export/window_drawing.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include <GL/gl.h>

#include "image/bitmap.h"

// Characters of a file name, with its end.
constexpr int kNameSize = 32;

// The number of the next numbered capture.
static int counter = 0;

static bool DumpBuffer(GLenum buffer, const char *prefix, const char *name, int width, int height, int code,
                       Pixel *pixels);
static std::string NameFile(const char *prefix, const char *name, int code);
static bool Exists(const std::string &name);

int WindowDump(const char *name, int width, int height, int stereo, int code)
{
    Pixel *pixels = Create_Bitmap(width, height);
    if (pixels == nullptr) {
        fprintf(stderr, "WindowDump - Failed to allocate memory for image\n");
        return 0;
    }
    glFinish();
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    const bool saved = DumpBuffer(GL_BACK_LEFT, stereo ? "L_" : "", name, width, height, code, pixels) &&
                       (!stereo || DumpBuffer(GL_BACK_RIGHT, "R_", name, width, height, code, pixels));
    Destroy_Bitmap(pixels);
    if (!saved)
        return 0;
    counter++;
    return 1;
}

static bool DumpBuffer(GLenum buffer, const char *prefix, const char *name, int width, int height, int code,
                       Pixel *pixels)
{
    std::string path = NameFile(prefix, name, code);
    while (*name == '\0' && Exists(path)) {
        counter++;
        path = NameFile(prefix, name, code);
    }
    FILE *file = fopen(path.c_str(), "wb");
    if (file == nullptr) {
        fprintf(stderr, "WindowDump - Failed to open file for window dump\n");
        return false;
    }
    glReadBuffer(buffer);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
    Write_Bitmap(file, pixels, width, height, code);
    fclose(file);
    return true;
}

static std::string NameFile(const char *prefix, const char *name, int code)
{
    // By the absolute value of the code; codes that have no extension name a file that ends with the dot.
    static const char *const kExtensions[] = {"",    "tga", "ppm", "rgb", "raw", "tif", "eps",
                                              "eps", "raw", "bmp", "",    "tga", "tga", "tga"};
    const unsigned format = static_cast<unsigned>(std::abs(code));
    const char *extension = format < std::size(kExtensions) ? kExtensions[format] : "";
    char path[kNameSize];
    if (*name == '\0')
        snprintf(path, sizeof path, "%s%04d.%s", prefix, counter, extension);
    else
        snprintf(path, sizeof path, "%s%s.%s", prefix, name, extension);
    return path;
}

static bool Exists(const std::string &name)
{
    FILE *file = fopen(name.c_str(), "rb");
    if (file == nullptr)
        return false;
    fclose(file);
    return true;
}
