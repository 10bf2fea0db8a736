// Drawing without a window and without an X server: an OpenGL context of EGL that has no surface, and a frame
// buffer in it.

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

    // Makes the context and a frame buffer for pictures of a request. Returns what is missing, in words; empty where
    // nothing is.
    std::string Open(const PictureRequest &request);

    // Draws surface and aggregate as the camera sees them. Three bytes a pixel: red, green, blue; the top row first.
    // Returns what is wrong, in words; empty where nothing is.
    std::string Draw(std::vector<unsigned char> *pixels) const;

private:
    std::string MakeContext();
    std::string SetWidths(const PictureRequest &request);
    std::string MakeBuffer();
    void DrawTile(int left, int bottom) const;
    void ReadTile(int left, int bottom, std::vector<unsigned char> *pixels) const;

    void *display = nullptr;
    void *context = nullptr;
    int width = 0, height = 0; // of a picture, pixels
    int grid = 0;              // a pixel is the average of grid x grid samples, which are drawn
    // What is drawn at once, in samples: of a picture that is too large for that, a tile, with a border on all sides
    // over which lines and points that belong to its neighbours reach into it.
    int tilewidth = 0, tileheight = 0;
    int border = 0;
};
