#include "image/bitmap.h"

#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "golden.h"

static std::string File(const std::vector<Pixel> &pixels, int width, int height, int code)
{
    return Written([&](FILE *file) { Write_Bitmap(file, pixels.data(), width, height, code); });
}

TEST(Bitmap, MatchesExpectedText)
{
    const std::vector<Pixel> small = {{1, 2, 3, 0}, {1, 2, 3, 255}, {1, 2, 3, 255}, {7, 8, 9, 7},
                                      {4, 5, 6, 7}, {4, 5, 7, 7},   {4, 6, 7, 7},   {5, 6, 7, 7}};
    std::vector<Pixel> large;
    std::mt19937 random(3);
    for (const unsigned kinds : {1U, 2U, 5U, 100U})
        for (int i = 0; i < 600 * 3; i++)
            large.push_back({static_cast<unsigned char>(random() % kinds), 0, 0, 1});
    std::ostringstream text;
    for (const int code : {1, 11, 12, 13, -1, -11, -12, -13, 0, 2, 10, 14, 1000}) {
        text << code << ':';
        for (const char byte : File(small, 4, 2, code))
            text << ' ' << (byte & 0xff);
        const std::string file = File(large, 600, 12, code);
        text << ", " << file.size() << ' ' << Hash(file.data(), file.size()) << '\n';
    }
    ExpectGolden("bitmaps.txt", text.str());
    EXPECT_EQ(Create_Bitmap(-1, 5), nullptr);
    EXPECT_EQ(Create_Bitmap(2000000000, 2000000000), nullptr);
}
