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

TEST(TextWriter, PrintsMoreThanItHolds)
{
    const std::string longtext(100000, 'x');
    const auto print = [&](FILE *file) {
        TextWriter out(file);
        out.Print("%d%%: <%g,%g,%g>%c\n", -7, Vector{1, -0.5, 1e10}, ';');
        out.Print("%g %g %g %s\n", Colour{0.25, 1, 0}, longtext.c_str());
    };
    EXPECT_TRUE(Written(print) == "-7%: <1,-0.5,1e+10>;\n0.25 1 0 " + longtext + '\n');
    TextWriter out(stderr);
    EXPECT_DEATH(out.Print("%g %g\n", 1.0), "");
    EXPECT_DEATH(out.Print("%g\n", 1.0, 2.0), "");
}
