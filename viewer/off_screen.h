// Drawing without a window and without an X server, in an OpenGL context made by EGL without a surface, with a frame
// buffer object

#pragma once

#include <string>
#include <vector>

struct PictureRequest;

class OffScreen
{
public:
    OffScreen() = default;
    ~OffScreen();
    OffScreen(const OffScreen &) = delete;
    OffScreen &operator=(const OffScreen &) = delete;

    // Makes the context and a frame buffer for the pictures of a request. Returns what is missing, in words; empty on
    // success.
    std::string Open(const PictureRequest &request);

    // Draws surface and aggregate as the camera sees them. A pixel is three bytes, red, green and blue; the top row
    // comes first. Returns what went wrong, in words; empty on success.
    std::string Draw(std::vector<unsigned char> *pixels) const;

private:
    std::string MakeContext();
    std::string SetWidths(const PictureRequest &request);
    std::string MakeBuffer();
    void DrawTile(int left, int bottom) const;
    void ReadTile(int left, int bottom, std::vector<unsigned char> *pixels) const;

    void *display = nullptr;
    void *context = nullptr;
    int width = 0, height = 0; // size of a picture in pixels
    int grid = 0;              // a pixel is the average of grid x grid samples; samples are what GL draws
    // Size in samples of what is drawn at once: the whole picture, or tiles of a picture that is too large for that.
    // A tile has a border on all sides, so that wide lines and points centred outside of it reach into it.
    int tilewidth = 0, tileheight = 0;
    int border = 0;
};
