// What pictures without a screen are to be.

#pragma once

#include <string>

struct PictureRequest {
    std::string path; // of the picture; of a series NAME-0001.png and so on for NAME.png
    int width = 1920, height = 1080;
    int samples = 4; // a pixel: a square number
    double linewidth = 1,
           pointsize = 1;   // pixels where the shorter side has up to 1000, in larger pictures as much more
    double turn = 0;        // of the camera about the vertical through its point of rotation, degrees
    double tilt = 0;        // by how many degrees the camera is raised after it
    bool fits = false;      // after that, all of it is put into view
    double zoom = 1;        // how many times as large the middle is drawn, above 0
    bool lightsturn = true; // with the camera; else they stay
    int turntable = 0;      // so many pictures round the vertical; 0: no turntable
    int film = 0;           // so many pictures of the aggregate as it grew; 0: no film
};
