#pragma once

// Saves what stands in the window's back buffer as an image file in the current directory, in one of the
// ImageFormats of image/bitmap.h. `name` is the file's name without its extension, cut where the whole
// exceeds 31 characters; an empty name stands for the next number that no file bears (0000.tga), and only a
// named file is overwritten. Of view windows that capture in one directory at a time, all but the first put their process
// number before (123-0000.tga). With `stereo`, both back buffers are saved, as L_... and R_.... Returns 1, or 0
// with no file left, after a message on standard error, and errno says why. Of captures that fail in a row only the first
// has its message.
int WindowDump(const char *name, int width, int height, int stereo, int code);

// Ends a row of captures.
void EndCaptures();
