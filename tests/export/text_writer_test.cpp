#include "export/text_writer.h"

#include <bit>
#include <cmath>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "temporary_file.h"

TEST(TextWriter, PrintsNumbersAsPrintf)
{
    std::mt19937_64 random(7);
    const auto check = [](double value) {
        char expected[64], text[kNumberLength + 1];
        snprintf(expected, sizeof expected, "%g", value);
        *FormatNumber(text, value) = '\0';
        ASSERT_STREQ(text, expected);
    };
    for (const double value : {0.0, -0.0, HUGE_VAL, -HUGE_VAL, std::nan(""), -std::nan(""), 1e5, 999999.5,
                               1e-5, 9.999995e-5, 5e-324, 1.7976931348623157e308, 0.0001})
        check(value);
    for (int i = 0; i < SARKELO_NUMBERS / 2; i++) {
        check(std::bit_cast<double>(random()));                                         // any bits
        check(std::ldexp(static_cast<double>(random() >> 11), -53) * 200 - 100);        // coordinates
        check(static_cast<double>(static_cast<int>(random() % 2000001) - 1000000) / 2); // halves: ties
    }
}

// More than the writer holds at a time, and a text longer than it.
TEST(TextWriter, PrintsEveryDirective)
{
    const std::string longtext(100000, 'x');
    std::string expected;
    const std::string written = Written([&](FILE *file) {
        TextWriter out(file);
        for (int i = 0; i < 20000; i++) {
            out.Print("%d%%: <%g,%g,%g>%c %s\n%g %g %g\n", -i, Vector{1, -0.5, 1e10}, ';', "name",
                      Colour{0.25, 1, 0});
            expected += std::to_string(-i) + "%: <1,-0.5,1e+10>; name\n0.25 1 0\n";
        }
        out.Print("%s", longtext.c_str());
    });
    EXPECT_TRUE(written == expected + longtext);
    TextWriter out(stderr);
    EXPECT_DEATH(out.Print("%g %g\n", 1.0), "");
    EXPECT_DEATH(out.Print("%g\n", 1.0, 2.0), "");
}
