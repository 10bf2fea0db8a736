// Texts that a test compares with the files of tests/golden.

#pragma once

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "temporary_file.h"

// A number without the noise of rounding, which differs between compilers, and without the sign of NaN.
inline double Plain(double value)
{
    return std::fabs(value) < 1e-9 ? 0 : std::isnan(value) ? std::fabs(value) : value;
}

// A text of more than so many lines as its first lines, their number and a hash of the whole.
inline std::string Shortened(const std::string &text, int lines)
{
    size_t end = 0;
    for (int i = 0; i < lines && end < text.size(); i++)
        end = std::min(text.find('\n', end), text.size() - 1) + 1;
    if (end == text.size())
        return text;
    return text.substr(0, end) + "of " + std::to_string(std::count(text.begin(), text.end(), '\n')) +
           " lines, sum " + std::to_string(Hash(text.data(), text.size())) + "\n";
}

// Compares with a file, or writes it where SARKELO_GOLDEN is set in the environment.
inline void ExpectGolden(const std::string &name, const std::string &text)
{
    const std::string path = SARKELO_TESTS "/golden/" + name;
    if (getenv("SARKELO_GOLDEN") != nullptr)
        std::ofstream(path) << text;
    EXPECT_EQ(text, ReadWhole(path)) << name;
}
