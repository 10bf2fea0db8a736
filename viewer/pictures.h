// Pictures without a screen.

#pragma once

#include <string>
#include <vector>

#include "base/fault.h"
#include "viewer/picture_request.h"

// The paths of all pictures of a request, in order
std::vector<std::string> PicturePaths(const PictureRequest &request);

// Draws the aggregate and the surface with the current camera and options, and writes PNG files. Each file is written
// at once, with signals blocked, so that a signal never leaves an incomplete file. Throws std::bad_alloc if memory
// does not suffice; the OpenGL driver may crash instead.
Fault DrawPictures(const PictureRequest &request);
