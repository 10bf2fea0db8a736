#include "export/text_writer.h"

#include <charconv>
#include <cstdlib>
#include <cstring>

constexpr int kDigits = 6;
constexpr int kExactDigits = 17;

char *FormatNumber(char *text, double value)
{
    return std::to_chars(text, text + kNumberLength, value, std::chars_format::general, kDigits).ptr;
}

TextWriter::TextWriter(FILE *output) : file(output) {}

TextWriter::~TextWriter()
{
    Flush();
}

void TextWriter::Flush()
{
    fwrite(buffer, 1, length, file);
    length = 0;
}

FILE *TextWriter::Stream()
{
    Flush();
    return file;
}

void TextWriter::PutExact(double value)
{
    MakeRoom(kNumberLength);
    char *end = buffer + length;
    end = std::to_chars(end, end + kNumberLength, value, std::chars_format::general, kExactDigits).ptr;
    length = static_cast<std::size_t>(end - buffer);
}

void TextWriter::Put(const char **format, double value)
{
    PutToDirective(format);
    MakeRoom(kNumberLength);
    length = static_cast<std::size_t>(FormatNumber(buffer + length, value) - buffer);
}

void TextWriter::Put(const char **format, int value)
{
    PutToDirective(format);
    MakeRoom(kNumberLength);
    char *end = buffer + length;
    length = static_cast<std::size_t>(std::to_chars(end, end + kNumberLength, value).ptr - buffer);
}

void TextWriter::Put(const char **format, char value)
{
    PutToDirective(format);
    PutText({&value, 1});
}

void TextWriter::Put(const char **format, const char *value)
{
    PutToDirective(format);
    PutText(value);
}

void TextWriter::Put(const char **format, Vector value)
{
    Put(format, value.x);
    Put(format, value.y);
    Put(format, value.z);
}

void TextWriter::Put(const char **format, Colour value)
{
    Put(format, value.r);
    Put(format, value.g);
    Put(format, value.b);
}

void TextWriter::PutRest(const char *format)
{
    if (*PutLiteral(format) != '\0')
        abort(); // a directive without an argument
}

void TextWriter::PutToDirective(const char **format)
{
    const char *directive = PutLiteral(*format);
    if (*directive == '\0')
        abort(); // an argument without a directive
    *format = directive + 2;
}

const char *TextWriter::PutLiteral(const char *format)
{
    for (; *format != '\0'; format++) {
        if (*format == '%') {
            if (format[1] != '%')
                break;
            format++;
        }
        MakeRoom(1);
        buffer[length++] = *format;
    }
    return format;
}

void TextWriter::PutText(std::string_view text)
{
    while (!text.empty()) {
        MakeRoom(1);
        const std::size_t count = std::min(text.size(), sizeof buffer - length);
        memcpy(buffer + length, text.data(), count);
        length += count;
        text.remove_prefix(count);
    }
}

void TextWriter::MakeRoom(std::size_t count)
{
    if (sizeof buffer - length < count)
        Flush();
}
