#include "tools/quote.h"

#include <array>
#include <cstdio>
#include <utility>

namespace {

constexpr std::size_t LongestQuote = 60;

std::string ByteCode(char c)
{
    std::array<char, 8> code{};
    std::snprintf(code.data(), code.size(), "\\x%02X", static_cast<unsigned char>(c));
    return code.data();
}

// The length of the control character that a text begins with: those of ASCII, and in UTF-8 U+0080 to U+009F.
std::size_t ControlLength(std::string_view text)
{
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < ' ' || first == 0x7F)
        return 1;
    return first == 0xC2 && text.size() > 1 && static_cast<unsigned char>(text[1]) < 0xA0 ? 2 : 0;
}

}  // namespace

std::string Quote(std::string text)
{
    for (char &c : text)
        c = c >= ' ' && c < 0x7F ? c : '?';
    return '"' + Shorten(std::move(text)) + '"';
}

std::string Shorten(std::string text)
{
    return text.size() > LongestQuote ? text.substr(0, LongestQuote) + "..." : text;
}

std::string Printable(std::string_view text)
{
    std::string printable;
    for (const char c : text)
        printable += c >= ' ' && c < 0x7F ? std::string(1, c) : ByteCode(c);
    return printable;
}

std::string OneLine(std::string_view text)
{
    std::string line;
    while (!text.empty()) {
        const std::size_t control = ControlLength(text);
        for (std::size_t i = 0; i < control; ++i)
            line += ByteCode(text[i]);
        if (control == 0)
            line += text[0];
        text.remove_prefix(control != 0 ? control : 1);
    }
    return line;
}

std::string MessageLine(std::string_view text)
{
    constexpr std::size_t Begin = 5000, End = 1000;
    if (text.size() <= Begin + End)
        return OneLine(text);
    return OneLine(text.substr(0, Begin)) + " ... " + OneLine(text.substr(text.size() - End));
}

std::string CsvField(const std::string &field)
{
    if (field.find_first_of(",\"\r\n") == std::string::npos)
        return field;
    std::string quoted = "\"";
    for (const char c : field)
        quoted += c == '"' ? "\"\"" : std::string(1, c);
    return quoted + '"';
}
