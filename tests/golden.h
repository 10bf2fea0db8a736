// Texts that a test compares with what was found right before: files of tests/golden.

#pragma once

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "hash.h"

// A number without the noise of rounding, which differs between compilers: 0 where it is near 0, and no NaN
// has a sign.
inline double Plain(double value)
{
    return std::fabs(value) < 1e-9 ? 0 : std::isnan(value) ? std::fabs(value) : value;
}

// A text that is longer than so many lines as the first of them, their number and a sum over the whole.
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

// Fails where the text differs from the file, and shows where. With SARKELO_GOLDEN set in the environment, the
// text becomes the file: look at what changes then.
inline void ExpectGolden(const std::string &name, const std::string &text)
{
    const std::string path = SARKELO_TESTS "/golden/" + name;
    if (getenv("SARKELO_GOLDEN") != nullptr)
        std::ofstream(path) << text;
    std::ostringstream file;
    file << std::ifstream(path).rdbuf();
    const std::string golden = file.str();
    if (text == golden)
        return;
    const auto differ = std::mismatch(text.begin(), text.end(), golden.begin(), golden.end());
    const auto at = static_cast<size_t>(differ.first - text.begin());
    const size_t from = at > 200 ? at - 200 : 0;
    ADD_FAILURE() << name << " differs at byte " << at << "\nfound:\n"
                  << text.substr(from, 300) << "\ngolden:\n"
                  << golden.substr(std::min(from, golden.size()), 300);
}
