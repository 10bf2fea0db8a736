#include "export/text_writer.h"

#include <bit>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>

#include <gtest/gtest.h>

TEST(TextWriter, NumbersAreThoseOfPrintf)
{
    std::mt19937_64 random(7);
    const auto check = [](double value) {
        char expected[64], text[kNumberLength + 1];
        snprintf(expected, sizeof expected, "%g", value);
        *FormatNumber(text, value) = '\0';
        ASSERT_STREQ(text, expected);
    };
    const double odd[] = {
        0.0,      -0.0, HUGE_VAL,    -HUGE_VAL, std::nan(""), -std::nan(""),          1e5,
        999999.5, 1e-5, 9.999995e-5, 0.5,       5e-324,       1.7976931348623157e308, 0.0001};
    for (const double value : odd)
        check(value);
    for (int i = 0; i < SARKELO_NUMBERS; i++) {
        check(std::bit_cast<double>(random()));                                         // any bits
        check(std::ldexp(static_cast<double>(random() >> 11), -53) * 200 - 100);        // coordinates
        check(static_cast<double>(static_cast<int>(random() % 2000001) - 1000000) / 2); // halves: ties
        check(std::round(static_cast<double>(random() % 10000000)) / 1e6 - 5);          // short decimals
    }
}

TEST(TextWriter, DirectivesTakeTheirArguments)
{
    char *text = nullptr;
    size_t length = 0;
    FILE *file = open_memstream(&text, &length);
    {
        TextWriter out(file);
        out.Print("%d%%: <%g,%g,%g>%c %s\n%g %g %g\n", -7, Vector{1, -0.5, 1e10}, ';', "name",
                  Colour{0.25, 1, 0});
        out.Print("no directive%%");
    }
    fclose(file);
    EXPECT_STREQ(text, "-7%: <1,-0.5,1e+10>; name\n0.25 1 0\nno directive%");
    free(text);
}

// Far more than the writer holds at a time, and texts longer than it.
TEST(TextWriter, NothingIsLostBetweenBuffers)
{
    char *text = nullptr;
    size_t length = 0;
    FILE *file = open_memstream(&text, &length);
    std::string expected;
    {
        TextWriter out(file);
        for (int i = 0; i < 60000; i++) {
            out.Print("%d %g,", i, i / 8.0);
            expected += std::to_string(i) + " ";
            char number[32];
            snprintf(number, sizeof number, "%g,", i / 8.0);
            expected += number;
        }
        expected += std::string(100000, 'x');
        out.Print("%s", std::string(100000, 'x').c_str());
    }
    fclose(file);
    EXPECT_TRUE(expected == std::string(text, length));
    free(text);
}

TEST(TextWriterDeathTest, ArgumentsThatDoNotMatchEndTheProgram)
{
    TextWriter out(stderr);
    EXPECT_DEATH(out.Print("%g %g\n", 1.0), "");
    EXPECT_DEATH(out.Print("%g\n", 1.0, 2.0), "");
}
