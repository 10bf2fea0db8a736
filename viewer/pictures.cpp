#include "viewer/pictures.h"

#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <png.h>

#include "base/output_file.h"
#include "growth/replay.h"
#include "growth/state.h"
#include "toolkit/wait_cursor.h"
#include "viewer/camera.h"
#include "viewer/off_screen.h"
#include "viewer/surface_drawing.h"

namespace
{
// A stream that writes to memory
struct MemoryStream {
    MemoryStream() { stream = open_memstream(&data, &size); }
    ~MemoryStream()
    {
        if (stream != nullptr)
            fclose(stream);
        free(data);
    }
    MemoryStream(const MemoryStream &) = delete;
    MemoryStream &operator=(const MemoryStream &) = delete;

    FILE *stream;
    char *data = nullptr; // valid once the stream has been flushed, as is `size`
    std::size_t size = 0;
};
} // namespace

static void AimCamera(const PictureRequest &request);
static void TurnLights(double theta, Vector axis);
static Fault DrawSeries(const PictureRequest &request, const OffScreen &screen);
static Fault DrawPicture(const std::string &path, const OffScreen &screen);
static Fault WritePNG(const std::string &path, const std::vector<unsigned char> &pixels);
static Fault WriteWhole(const std::string &path, const MemoryStream &content);

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
    DisableWaitCursors();
    camera.screenwidth = request.width;
    camera.screenheight = request.height;
    camera.stereo = kStereoNone;
    OffScreen screen;
    const std::string missing = screen.Open(request);
    if (!missing.empty())
        return {kFileFault, request.path + ": cannot be drawn: " + missing};
    AimCamera(request);
    DrawSTL(options.surfacemode, 1);
    return DrawSeries(request, screen);
}

static void AimCamera(const PictureRequest &request)
{
    const double turn = request.turn * kDegreesToRadians;
    const double tilt = -request.tilt * kDegreesToRadians;
    TurnCamera(turn);
    const Vector right = RightVector();
    RotateCamera(0, tilt, 0);
    if (request.lightsturn) {
        TurnLights(turn, {0, 0, 1});
        TurnLights(tilt, right);
    }
    if (request.fits && request.turntable > 0)
        FitTurningCamera();
    else if (request.fits)
        FitCamera();
    ZoomCamera(request.zoom);
}

// Turns the lights by theta radians about an axis through the origin: they are infinitely far away.
static void TurnLights(double theta, Vector axis)
{
    for (float *light : {options.marker1, options.marker2}) {
        const Vector turned = ArbitraryRotate({light[0], light[1], light[2]}, theta, axis);
        light[0] = static_cast<float>(turned.x);
        light[1] = static_cast<float>(turned.y);
        light[2] = static_cast<float>(turned.z);
    }
}

static Fault DrawSeries(const PictureRequest &request, const OffScreen &screen)
{
    const std::vector<std::string> paths = PicturePaths(request);
    const int count = static_cast<int>(paths.size());
    const int all = ncells;
    if (request.film > 0) {
        const Replay replay;
        for (int k = 1; k <= count; k++) {
            replay.GrowTo(static_cast<int>(std::lround(static_cast<double>(all) * k / count)));
            if (Fault fault = DrawPicture(paths[k - 1], screen))
                return fault;
        }
        return {};
    }
    for (const std::string &path : paths) {
        if (Fault fault = DrawPicture(path, screen))
            return fault;
        TurnCamera(kTwoPi / count);
        if (request.lightsturn)
            TurnLights(kTwoPi / count, {0, 0, 1});
    }
    return {};
}

static Fault DrawPicture(const std::string &path, const OffScreen &screen)
{
    std::vector<unsigned char> pixels;
    const std::string fault = screen.Draw(&pixels);
    return fault.empty() ? WritePNG(path, pixels) : Fault(kFileFault, path + ": cannot be drawn: " + fault);
}

// Writes the pixels of a picture that has the size of the camera's screen.
static Fault WritePNG(const std::string &path, const std::vector<unsigned char> &pixels)
{
    const MemoryStream encoded;
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(camera.screenwidth);
    image.height = static_cast<png_uint_32>(camera.screenheight);
    image.format = PNG_FORMAT_RGB;
    const bool whole = encoded.stream != nullptr &&
                       png_image_write_to_stdio(&image, encoded.stream, 0, pixels.data(), 0, nullptr) != 0 &&
                       fflush(encoded.stream) == 0;
    png_image_free(&image);
    return whole ? WriteWhole(path, encoded) : Fault(kMemoryFault, path + ": not enough memory");
}

// Writes a file. Signals that end the process are blocked until it is complete.
static Fault WriteWhole(const std::string &path, const MemoryStream &content)
{
    sigset_t ends, before;
    sigemptyset(&ends);
    for (const int number : {SIGHUP, SIGINT, SIGTERM})
        sigaddset(&ends, number);
    sigprocmask(SIG_BLOCK, &ends, &before);
    OutputFile file(path.c_str());
    if (file.Stream() != nullptr)
        fwrite(content.data, 1, content.size, file.Stream());
    Fault fault = file.Finish();
    sigprocmask(SIG_SETMASK, &before, nullptr);
    return fault;
}
