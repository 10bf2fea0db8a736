// Drawing without a window and without an X server: an OpenGL context of EGL that has no surface, and a frame
// buffer of any size in it.

#pragma once

#include <string>
#include <vector>

class OffScreen
{
public:
    OffScreen() = default;
    ~OffScreen();
    OffScreen(const OffScreen &) = delete;
    OffScreen &operator=(const OffScreen &) = delete;

    // Makes the context and a frame buffer of so many pixels, with so many samples a pixel. Returns what is
    // missing, in words; empty where nothing is.
    std::string Open(int width, int height, int samples);

    // Draws a frame as the window does, of camera.screenwidth x camera.screenheight pixels, which is the size
    // opened. Three bytes a pixel: red, green, blue; the top row first.
    [[nodiscard]] std::vector<unsigned char> Draw() const;

private:
    std::string MakeContext();
    std::string MakeBuffers(int samples);

    void *display = nullptr;
    void *context = nullptr;
    int columns = 0, rows = 0;
    unsigned drawn = 0;    // the frame buffer that is drawn into
    unsigned resolved = 0; // the one that is read, of one sample
};
