// Pictures without a screen.

#pragma once

#include <string>
#include <vector>

#include "recipe/fault.h"

struct PictureRequest {
    std::string path; // of the picture; of a series NAME-0001.png and so on for NAME.png
    int width = 1920, height = 1080;
    int samples = 4;   // a pixel
    double turn = 0;   // of the camera about the z axis, degrees
    double tilt = 0;   // by how many degrees the camera is raised after it
    double zoom = 1;   // how many times as large the middle is drawn, above 0
    int turntable = 0; // so many pictures round the z axis; 0: no turntable
    int film = 0;      // so many pictures of the aggregate as it grew; 0: no film
};

// The files that are to be written, in order.
std::vector<std::string> PicturePaths(const PictureRequest &request);

// Draws the aggregate and the surface as the camera and the options say, and writes PNG files.
Fault DrawPictures(const PictureRequest &request);
