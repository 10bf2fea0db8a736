#include "viewer/pictures.h"

#include <cmath>
#include <cstdio>

#include <png.h>

#include "export/output_file.h"
#include "growth/replay.h"
#include "growth/state.h"
#include "growth/wait_cursor.h"
#include "viewer/camera.h"
#include "viewer/off_screen.h"
#include "viewer/surface_drawing.h"

static Fault DrawSeries(const PictureRequest &request, OffScreen *screen);
static Fault WritePNG(const std::string &path, const std::vector<unsigned char> &pixels);

std::vector<std::string> PicturePaths(const PictureRequest &request)
{
    const int count = request.turntable + request.film;
    if (count == 0)
        return {request.path};
    const std::string stem = request.path.substr(0, request.path.rfind('.'));
    std::vector<std::string> paths;
    for (int k = 1; k <= count; k++) {
        char number[16];
        snprintf(number, sizeof number, "-%04d", k);
        paths.push_back(stem + number + ".png");
    }
    return paths;
}

Fault DrawPictures(const PictureRequest &request)
{
    LeaveOutWaitCursors();
    camera.screenwidth = request.width;
    camera.screenheight = request.height;
    camera.stereo = kStereoNone;
    options.showextras = options.showinfo = 0;
    OffScreen screen;
    const std::string missing = screen.Open(request.width, request.height, request.samples);
    if (!missing.empty())
        return {kFileFault, request.path + ": cannot be drawn: " + missing};
    TurnCamera(request.turn * kDegreesToRadians);
    RotateCamera(0, -request.tilt * kDegreesToRadians, 0);
    ZoomCamera(request.zoom);
    DrawSTL(options.surfacemode, 1);
    return DrawSeries(request, &screen);
}

static Fault DrawSeries(const PictureRequest &request, OffScreen *screen)
{
    const std::vector<std::string> paths = PicturePaths(request);
    const int count = static_cast<int>(paths.size());
    const int all = ncells;
    if (request.film > 0) {
        const Replay replay;
        for (int k = 1; k <= count; k++) {
            replay.GrowTo(static_cast<int>(std::lround(static_cast<double>(all) * k / count)));
            if (Fault fault = WritePNG(paths[k - 1], screen->Draw()))
                return fault;
        }
        return {};
    }
    for (const std::string &path : paths) {
        if (Fault fault = WritePNG(path, screen->Draw()))
            return fault;
        TurnCamera(kTwoPi / count);
    }
    return {};
}

// The pixels of a picture of the camera's size.
static Fault WritePNG(const std::string &path, const std::vector<unsigned char> &pixels)
{
    OutputFile file(path.c_str());
    if (file.Stream() == nullptr)
        return {kFileFault, ""};
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(camera.screenwidth);
    image.height = static_cast<png_uint_32>(camera.screenheight);
    image.format = PNG_FORMAT_RGB;
    const bool written = png_image_write_to_stdio(&image, file.Stream(), 0, pixels.data(), 0, nullptr) != 0;
    png_image_free(&image);
    if (!written && !ferror(file.Stream()))
        return {kMemoryFault, path + ": not enough memory"};
    return file.Finish() ? Fault() : Fault(kFileFault, "");
}
