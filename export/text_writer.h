// Output of the exports: text as fprintf writes it in the "C" locale, several times as fast, and binary numbers.

#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <string_view>
#include <type_traits>

#include "geom/colour.h"
#include "geom/vector.h"

// Writes the text of value as "%g" prints it (six significant digits; "inf", "-nan") to text, unterminated,
// and returns the end. text has room for kNumberLength characters.
constexpr int kNumberLength = 24;
char *FormatNumber(char *text, double value);

// Collects text for a file that stays the caller's; the rest is written at the latest when the writer goes.
class TextWriter
{
public:
    explicit TextWriter(FILE *output);
    ~TextWriter();
    TextWriter(const TextWriter &) = delete;
    TextWriter &operator=(const TextWriter &) = delete;

    // As fprintf, with the directives %g, %d, %c, %s and %%, none with a width. A Vector or a Colour stands
    // for the three numbers of three directives. Arguments and directives must match: only their number is
    // looked at, and the program ends if it differs.
    template<typename... Arguments>
    void Print(const char *format, Arguments... arguments)
    {
        (Put(&format, arguments), ...);
        PutRest(format);
    }

    // A number with the 17 digits that tell it from all others.
    void PutExact(double value);

    // A number in binary, its lowest byte first.
    template<typename Number>
    void PutBinary(Number value)
    {
        static_assert(std::is_arithmetic_v<Number>);
        auto bytes = std::bit_cast<std::array<char, sizeof value>>(value);
        if constexpr (std::endian::native == std::endian::big)
            std::reverse(bytes.begin(), bytes.end());
        PutText({bytes.data(), bytes.size()});
    }

    // Hands everything to the file.
    void Flush();

    // The file, to which everything has been handed.
    FILE *Stream();

private:
    void Put(const char **format, double value);
    void Put(const char **format, int value);
    void Put(const char **format, char value);
    void Put(const char **format, const char *value);
    void Put(const char **format, Vector value);
    void Put(const char **format, Colour value);
    void PutRest(const char *format);

    // Writes the text before the next directive and moves *format behind it.
    void PutToDirective(const char **format);
    // Writes text up to the next directive; returns where that, or the end, stands.
    const char *PutLiteral(const char *format);
    void PutText(std::string_view text);
    void MakeRoom(std::size_t count);

    FILE *file;
    std::size_t length = 0;
    char buffer[1 << 16];
};
