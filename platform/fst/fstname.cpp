#include "platform/fst/fstname.h"

#include <charconv>
#include <optional>
#include <utility>

namespace NTARN {
namespace {

std::string_view WithoutBlanksAtEnd(std::string_view text)
{
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

// Where the last brackets begin; npos if the name does not end in brackets.
std::size_t FindIndex(std::string_view name)
{
    if (name.empty() || name.back() != ']')
        return std::string_view::npos;
    const std::size_t open = name.rfind('[');
    if (open == std::string_view::npos || open == 0)
        return std::string_view::npos;
    const bool isExtended = name.front() == '\\';
    const char before = name[open - 1];
    return isExtended && before != ' ' && before != '\\' && before != ']' ? std::string_view::npos : open;
}

bool TakeBound(std::string_view &text, int &bound)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), bound);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return error == std::errc();
}

// "[7:0]"
std::optional<std::pair<int, int>> ReadRange(std::string_view brackets)
{
    std::string_view text = brackets.substr(1, brackets.size() - 2);
    std::pair<int, int> range;
    if (!TakeBound(text, range.first) || text.empty() || text.front() != ':')
        return std::nullopt;
    text.remove_prefix(1);
    if (!TakeBound(text, range.second) || !text.empty())
        return std::nullopt;
    return range;
}

bool Spans(const std::pair<int, int> &range, std::uint32_t width)
{
    const long long distance = static_cast<long long>(range.first) - range.second;
    return (distance < 0 ? -distance : distance) + 1 == width;
}

}  // namespace

SFstName SplitFstName(std::string_view text, std::uint32_t width)
{
    const std::string_view name = WithoutBlanksAtEnd(text);
    SFstName split = {name, {}, static_cast<int>(width - 1), 0};
    const std::size_t open = FindIndex(name);
    if (open == std::string_view::npos)
        return split;
    split.base = WithoutBlanksAtEnd(name.substr(0, open));
    const std::string_view brackets = name.substr(open);
    const auto range = ReadRange(brackets);
    if (range && Spans(*range, width)) {
        split.left = range->first;
        split.right = range->second;
    } else {
        split.index = brackets;
    }
    return split;
}

}  // namespace NTARN
