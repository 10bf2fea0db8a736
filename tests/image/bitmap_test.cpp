#include "image/bitmap.h"

#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

#include <gtest/gtest.h>

static std::vector<unsigned char> Written(const std::vector<Pixel> &pixels, int width, int height, int code)
{
    char *text = nullptr;
    size_t length = 0;
    FILE *file = open_memstream(&text, &length);
    Write_Bitmap(file, pixels.data(), width, height, code);
    fclose(file);
    const std::vector<unsigned char> bytes(text, text + length);
    free(text);
    return bytes;
}

// Reads the file back by the format's own rules: packets of at most 128 pixels that end with their row.
static std::vector<Pixel> Read(const std::vector<unsigned char> &file, int width, int height)
{
    const bool compressed = file.at(2) == 10;
    const size_t bytes = file.at(16) / 8U;
    std::vector<Pixel> pixels;
    size_t at = 18;
    const auto next = [&] {
        Pixel p = {file.at(at + 2), file.at(at + 1), file.at(at),
                   bytes == 4 ? file.at(at + 3) : static_cast<unsigned char>(0)};
        at += bytes;
        return p;
    };
    for (int y = 0; y < height; y++) {
        int x = 0;
        while (x < width) {
            int count = 1;
            bool run = false;
            if (compressed) {
                count = file.at(at) % 128 + 1;
                run = file.at(at) >= 128;
                at++;
            }
            x += count;
            const Pixel first = next();
            pixels.push_back(first);
            for (int i = 1; i < count; i++)
                pixels.push_back(run ? first : next());
        }
        EXPECT_EQ(x, width); // no packet goes beyond the row
    }
    EXPECT_EQ(at, file.size()); // and nothing follows
    return pixels;
}

TEST(Bitmap, ReadsBackInEveryCode)
{
    std::mt19937 random(3);
    for (int round = 0; round < 200; round++) {
        const int width = round < 5 ? 1 + 127 * round : 1 + static_cast<int>(random() % 400);
        const int height = 1 + static_cast<int>(random() % 4);
        const unsigned long kinds = 1 + random() % 3; // few colours: long runs
        std::vector<Pixel> pixels(static_cast<size_t>(width * height));
        for (Pixel &p : pixels) {
            const auto v = static_cast<unsigned char>(random() % kinds * 50);
            p = {v, static_cast<unsigned char>(v + 1), static_cast<unsigned char>(v + 2),
                 static_cast<unsigned char>(9 * v)};
        }
        for (const int code : {1, 11, 12, 13, -1, -11, -12, -13}) {
            const auto file = Written(pixels, width, height, code);
            const bool alpha = std::abs(code) == 11 || std::abs(code) == 13;
            std::vector<int> header(18, 0);
            header[2] = std::abs(code) >= 12 ? 10 : 2;
            header[12] = width % 256;
            header[13] = width / 256;
            header[14] = height;
            header[16] = alpha ? 32 : 24;
            header[17] = alpha ? 8 : 0;
            ASSERT_TRUE(std::equal(header.begin(), header.end(), file.begin())) << code;
            const std::vector<Pixel> read = Read(file, width, height);
            ASSERT_EQ(read.size(), pixels.size());
            for (int y = 0; y < height; y++)
                for (int x = 0; x < width; x++) {
                    Pixel expected = pixels[static_cast<size_t>((code > 0 ? y : height - 1 - y) * width + x)];
                    if (!alpha)
                        expected.a = 0;
                    ASSERT_EQ(memcmp(&expected, &read[static_cast<size_t>(y * width + x)], sizeof(Pixel)), 0);
                }
        }
    }
}

TEST(Bitmap, RunsAreWorthAPacket)
{
    const std::vector<Pixel> equal(800, Pixel{1, 2, 3, 4});
    const auto file = Written(equal, 800, 1, 12);
    EXPECT_EQ(file.size(), 18U + 7 * 4); // 6 runs of 128, one of 32
    const std::vector<unsigned char> header = {0, 0, 10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x20, 3, 0x58, 2, 24, 0};
    const auto large = Written(std::vector<Pixel>(800 * 600), 800, 600, 12);
    EXPECT_TRUE(std::equal(header.begin(), header.end(), large.begin()));
}

// Only a picture that has the alpha is packed by it.
TEST(Bitmap, RunsAreOfWhatIsWritten)
{
    const std::vector<Pixel> row = {{1, 2, 3, 0}, {1, 2, 3, 255}, {1, 2, 3, 7}};
    EXPECT_EQ(Written(row, 3, 1, kImageTGACompressed).size(), 18U + 1 + 3);
    EXPECT_EQ(Written(row, 3, 1, kImageTGACompressedAlpha).size(), 18U + 1 + 3 * 4);
}

TEST(Bitmap, OtherCodesAndSizes)
{
    const std::vector<Pixel> pixels(4);
    for (const int code : {0, 2, 3, 10, 14, -9, 1000})
        EXPECT_TRUE(Written(pixels, 2, 2, code).empty()) << code;
    EXPECT_EQ(Create_Bitmap(-1, 5), nullptr);
    Pixel *large = Create_Bitmap(2000000000, 2000000000);
    EXPECT_EQ(large, nullptr);
    Pixel *none = Create_Bitmap(0, 0);
    EXPECT_NE(none, nullptr);
    Destroy_Bitmap(none);
}
