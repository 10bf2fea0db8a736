// Image files of a pixel buffer.

#pragma once

#include <cstdio>

struct Pixel {
    unsigned char r, g, b, a;
};

// The formats of Write_Bitmap: Truevision TGA, with 8 bits a channel. With the negative of a value, the rows are
// written in the opposite order.
enum ImageFormat {
    kImageTGA = 1,
    kImageTGAAlpha = 11,
    kImageTGACompressed = 12,
    kImageTGACompressedAlpha = 13
};

// Returns a buffer of width * height pixels, or nullptr if memory does not suffice. Rows follow each other without
// gaps, the bottom row of the image first.
Pixel *Create_Bitmap(int width, int height);
void Destroy_Bitmap(Pixel *buffer);

// Writes an image to an open file. Does nothing if neither `code` nor its negative is an ImageFormat.
void Write_Bitmap(FILE *file, const Pixel *buffer, int width, int height, int code);

// Writes one row as run-length packets, with 3 bytes (blue, green, red) or 4 (and alpha) a pixel. A packet has
// at most 128 pixels; two or more equal neighbours get a packet of their own.
void WriteTGACompressedRow(FILE *file, const Pixel *row, int width, int bytes);
