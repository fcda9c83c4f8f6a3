#include "tools/examine/findingtext.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include <nlohmann/json.hpp>

#include "tools/output.h"
#include "tools/quote.h"

namespace tesk {

namespace {

constexpr std::size_t MostLines = 20;  // further findings are counted

// Bytes that continue a letter take no column of their own.
bool IsContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

std::size_t Columns(std::string_view text)
{
    return static_cast<std::size_t>(std::ranges::count_if(text, [](char c) { return !IsContinuation(c); }));
}

std::string OnOneLine(std::string_view text)
{
    std::string line(text);
    std::ranges::replace_if(
        line, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == 0x7F; }, ' ');
    return line;
}

// Moves a cut to the beginning of a letter.
std::size_t LetterBegin(std::string_view text, std::size_t at)
{
    while (at > 0 && at < text.size() && IsContinuation(text[at]))
        --at;
    return std::min(at, text.size());
}

EColour ColourOf(ESeverity severity)
{
    return severity == ESeverity::Error ? EColour::Red : EColour::Yellow;
}

const char *Name(ESeverity severity)
{
    return severity == ESeverity::Error ? "error" : "warning";
}

}  // namespace

std::string FindingLine(const SFinding &finding)
{
    std::string line;
    if (finding.part > 0)
        line = "part " + std::to_string(finding.part) + ", column " + std::to_string(finding.column + 1) + ": ";
    line += finding.text;
    if (!finding.advice.empty())
        line += "; " + finding.advice;
    return OneLine(line);
}

std::string FindingPicture(const SFinding &finding, const std::string &formula, std::size_t width)
{
    if (finding.length == 0 || finding.column >= formula.size())
        return {};
    // As much of what stands in front as leaves room for the place itself.
    const std::size_t front = finding.column > width / 2 ? finding.column - width / 2 : 0;
    const std::size_t begin = LetterBegin(formula, front);
    const std::size_t end = LetterBegin(formula, std::min(begin + width, formula.size()));
    const std::string shown = OnOneLine(std::string_view(formula).substr(begin, end - begin));
    const std::string_view place = std::string_view(shown).substr(finding.column - begin);
    const std::size_t length = std::max<std::size_t>(1, Columns(place.substr(0, finding.length)));
    const std::size_t indent = Columns(std::string_view(shown).substr(0, finding.column - begin));
    return "  " + shown + "\n  " + std::string(indent, ' ') + '^' + std::string(length - 1, '~');
}

void WriteFindings(const CFindings &findings, const std::string &formula)
{
    const bool isDrawn = IsErrorTerminal();
    std::size_t count = 0;
    for (const SFinding &finding : findings) {
        if (count++ == MostLines) {
            std::fprintf(stderr, "tesk: %zu further findings\n", findings.size() - MostLines);
            return;
        }
        const std::string name = Coloured(Name(finding.severity), ColourOf(finding.severity));
        std::fprintf(stderr, "tesk: %s: %s\n", name.c_str(), FindingLine(finding).c_str());
        const std::string picture = isDrawn ? FindingPicture(finding, formula, 76) : "";
        const std::size_t caret = picture.rfind('^');
        if (caret != picture.npos)
            std::fprintf(stderr, "%s%s\n", picture.substr(0, caret).c_str(),
                         Coloured(picture.substr(caret), EColour::Green).c_str());
    }
}

nlohmann::json FindingsJson(const CFindings &findings)
{
    nlohmann::json list = nlohmann::json::array();
    for (const SFinding &finding : findings)
        list.push_back({{"severity", Name(finding.severity)},
                        {"part", finding.part},
                        {"column", finding.column + 1},
                        {"length", finding.length},
                        {"text", finding.text},
                        {"advice", finding.advice}});
    return list;
}

}  // namespace tesk
