#include "tools/quote.h"

#include <array>
#include <cstdio>

namespace {

constexpr std::size_t LongestQuote = 60;

}  // namespace

std::string Quote(std::string text)
{
    for (char &c : text)
        c = c >= ' ' && c < 0x7F ? c : '?';
    if (text.size() > LongestQuote)
        text = text.substr(0, LongestQuote) + "...";
    return '"' + text + '"';
}

std::string Printable(std::string_view text)
{
    std::string printable;
    for (const char c : text) {
        std::array<char, 8> code{};
        std::snprintf(code.data(), code.size(), "\\x%02X", static_cast<unsigned char>(c));
        printable += c >= ' ' && c < 0x7F ? std::string(1, c) : code.data();
    }
    return printable;
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
