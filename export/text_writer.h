// Output for the exports: binary numbers, and the text that fprintf would write in the "C" locale, several times as
// fast

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

// Buffers output to a file, which the caller owns. The destructor writes what is still in the buffer.
class TextWriter
{
public:
    explicit TextWriter(FILE *output);
    ~TextWriter();
    TextWriter(const TextWriter &) = delete;
    TextWriter &operator=(const TextWriter &) = delete;

    // As fprintf, with the directives %g, %d, %c, %s and %%, without widths. A Vector or a Colour is an argument
    // for three directives. Arguments and directives must match: their types are not checked, and the program
    // aborts if their numbers differ.
    template<typename... Arguments>
    void Print(const char *format, Arguments... arguments)
    {
        (Put(&format, arguments), ...);
        PutRest(format);
    }

    // Writes a number with 17 digits, which are enough to read the same number again.
    void PutExact(double value);

    // Writes a number in binary, lowest byte first.
    template<typename Number>
    void PutBinary(Number value)
    {
        static_assert(std::is_arithmetic_v<Number>);
        auto bytes = std::bit_cast<std::array<char, sizeof value>>(value);
        if constexpr (std::endian::native == std::endian::big)
            std::reverse(bytes.begin(), bytes.end());
        PutText({bytes.data(), bytes.size()});
    }

    // Writes the buffer to the file.
    void Flush();

    // The file, after the buffer has been written to it
    FILE *Stream();

private:
    void Put(const char **format, double value);
    void Put(const char **format, int value);
    void Put(const char **format, char value);
    void Put(const char **format, const char *value);
    void Put(const char **format, Vector value);
    void Put(const char **format, Colour value);
    void PutRest(const char *format);

    // Writes the text before the next directive and moves *format behind the directive.
    void PutToDirective(const char **format);
    // Writes the text before the next directive; returns a pointer to the directive, or to the end of the format.
    const char *PutLiteral(const char *format);
    void PutText(std::string_view text);
    void MakeRoom(std::size_t count);

    FILE *file;
    std::size_t length = 0;
    char buffer[1 << 16];
};
