#include "tools/quote.h"

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
