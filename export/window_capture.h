#pragma once

// Saves the window's back buffer as an image file in the current directory. `code` is an ImageFormat of
// image/bitmap.h. `name` is the file's name without its extension; a file name of more than 31 characters is cut. An
// empty name means the next number without a file, as 0000.tga; only a file with a name is overwritten. When several
// view windows capture in one directory at a time, all but the first put their process id before the number, as
// 123-0000.tga. With `stereo`, both back buffers are saved, as L_... and R_.... Returns 1, or 0 on failure: without
// a file, with the reason in errno, and after a message on standard error, which only the first of several failures
// in a row prints.
int WindowDump(const char *name, int width, int height, int stereo, int code);

// Ends a series of captures: the next failure prints a message again.
void EndCaptures();
