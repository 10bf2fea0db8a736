// Pictures without a screen.

#pragma once

#include <string>
#include <vector>

#include "base/fault.h"
#include "viewer/picture_request.h"

// The files that are to be written, in order.
std::vector<std::string> PicturePaths(const PictureRequest &request);

// Draws the aggregate and the surface as the camera and the options say, and writes PNG files. Each comes into being
// whole and at once, with signals held back, so that a process that a signal ends leaves none behind. Throws
// std::bad_alloc where memory does not suffice; the driver may crash there.
Fault DrawPictures(const PictureRequest &request);
