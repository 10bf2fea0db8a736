// The options of sarkelo-view's pictures

#pragma once

#include <string>

struct PictureRequest {
    std::string path; // of the picture; NAME.png gives a series the paths NAME-0001.png and so on
    int width = 1920, height = 1080;
    int samples = 4; // for each pixel; a square number
    double linewidth = 1,
           pointsize = 1;   // pixels; scaled up in pictures whose shorter side has more than 1000 pixels
    double turn = 0;        // of the camera about the vertical through its point of rotation, degrees
    double tilt = 0;        // of the camera upwards, after the turn, degrees
    bool fits = false;      // after turn and tilt, the whole aggregate is fitted into the view
    double zoom = 1;        // magnification of the middle of the view, above 0
    bool lightsturn = true; // the lights turn with the camera
    int turntable = 0;      // number of pictures from all sides, round the vertical; 0: no turntable
    int film = 0;           // number of pictures of the aggregate as it grew; 0: no film
};
