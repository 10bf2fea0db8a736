// Image files of a pixel buffer.

#pragma once

#include <cstdio>

struct Pixel {
    unsigned char r, g, b, a;
};

// What Write_Bitmap writes: Truevision TGA, with 8 bits a channel. Negative, the rows are written in the
// opposite order.
enum ImageFormat {
    kImageTGA = 1,
    kImageTGAAlpha = 11,
    kImageTGACompressed = 12,
    kImageTGACompressedAlpha = 13
};

// A buffer of width * height pixels, or nullptr when memory does not hold it. Rows follow each other without
// gaps, the bottom row of the image first.
Pixel *Create_Bitmap(int width, int height);
void Destroy_Bitmap(Pixel *buffer);

// Writes an image to an open file. A code that is none of ImageFormat, negative or not, writes nothing.
void Write_Bitmap(FILE *file, const Pixel *buffer, int width, int height, int code);

// Writes one row as run-length packets of 3 bytes (blue, green, red) or 4 (and alpha) a pixel. A packet holds
// at most 128 pixels, and two equal neighbours are worth a packet of their own.
void WriteTGACompressedRow(FILE *file, const Pixel *row, int width, int bytes);
