#include "image/bitmap.h"

#include <cstdlib>

constexpr int kLongestPacket = 128;
constexpr int kRunPacket = 128; // added to the header of a packet of equal pixels

static void WriteHeader(FILE *file, int width, int height, bool compressed, bool alpha);
static void WritePixels(FILE *file, const Pixel *pixels, int count, int bytes);
static bool Equal(const Pixel &a, const Pixel &b, int bytes);
static int CountRun(const Pixel *pixels, int most, int bytes);
static int CountLiterals(const Pixel *pixels, int most, int bytes);

Pixel *Create_Bitmap(int width, int height)
{
    if (width < 0 || height < 0)
        return nullptr;
    return static_cast<Pixel *>(
        calloc(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) + 1, sizeof(Pixel)));
}

void Destroy_Bitmap(Pixel *buffer)
{
    free(buffer);
}

void Write_Bitmap(FILE *file, const Pixel *buffer, int width, int height, int code)
{
    const int format = std::abs(code);
    const bool compressed = format == kImageTGACompressed || format == kImageTGACompressedAlpha;
    const bool alpha = format == kImageTGAAlpha || format == kImageTGACompressedAlpha;
    if (format != kImageTGA && !compressed && !alpha)
        return;
    const int bytes = alpha ? 4 : 3;
    WriteHeader(file, width, height, compressed, alpha);
    for (int i = 0; i < height; i++) {
        const std::size_t y = static_cast<std::size_t>(code > 0 ? i : height - 1 - i);
        const Pixel *row = buffer + y * static_cast<std::size_t>(width);
        if (compressed)
            WriteTGACompressedRow(file, row, width, bytes);
        else
            WritePixels(file, row, width, bytes);
    }
}

void WriteTGACompressedRow(FILE *file, const Pixel *row, int width, int bytes)
{
    for (int i = 0; i < width;) {
        const int run = CountRun(row + i, width - i, bytes);
        if (run > 1) {
            fputc(kRunPacket + run - 1, file);
            WritePixels(file, row + i, 1, bytes);
            i += run;
        } else {
            const int literals = CountLiterals(row + i, width - i, bytes);
            fputc(literals - 1, file);
            WritePixels(file, row + i, literals, bytes);
            i += literals;
        }
    }
}

static void WriteHeader(FILE *file, int width, int height, bool compressed, bool alpha)
{
    const unsigned char header[18] = {
        0, // no image ID
        0, // no colour map
        static_cast<unsigned char>(compressed ? 10 : 2),
        0,
        0,
        0,
        0,
        0,
        0,
        0,
        0,
        0, // colour map, origin
        static_cast<unsigned char>(width),
        static_cast<unsigned char>(width >> 8),
        static_cast<unsigned char>(height),
        static_cast<unsigned char>(height >> 8),
        static_cast<unsigned char>(alpha ? 32 : 24),
        static_cast<unsigned char>(alpha ? 8 : 0), // attribute bits; the bottom row comes first
    };
    fwrite(header, 1, sizeof header, file);
}

static void WritePixels(FILE *file, const Pixel *pixels, int count, int bytes)
{
    for (int i = 0; i < count; i++) {
        const unsigned char colour[] = {pixels[i].b, pixels[i].g, pixels[i].r, pixels[i].a};
        fwrite(colour, 1, static_cast<std::size_t>(bytes), file);
    }
}

// Whether two pixels are written with the same bytes; alpha counts only with four bytes a pixel.
static bool Equal(const Pixel &a, const Pixel &b, int bytes)
{
    return a.r == b.r && a.g == b.g && a.b == b.b && (bytes < 4 || a.a == b.a);
}

// The number of pixels, from the first on, that are equal to the first
static int CountRun(const Pixel *pixels, int most, int bytes)
{
    int count = 1;
    while (count < most && count < kLongestPacket && Equal(pixels[count], pixels[0], bytes))
        count++;
    return count;
}

// The number of pixels, from the first on, before two neighbours that are equal
static int CountLiterals(const Pixel *pixels, int most, int bytes)
{
    int count = 1;
    while (count < most && count < kLongestPacket &&
           (count + 1 == most || !Equal(pixels[count], pixels[count + 1], bytes)))
        count++;
    return count;
}
