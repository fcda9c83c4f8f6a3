#include "integrations/vpi/hierarchicalname.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <initializer_list>
#include <utility>

#include "integrations/vpi/simulator.h"

namespace tesk::vpi {

namespace {

// Behind the end of a part that begins at `begin`.
std::size_t FindPartEnd(std::string_view name, std::size_t begin)
{
    if (begin < name.size() && name[begin] == '\\') {
        const std::size_t close = std::min(name.find_first_of("\\ ", begin + 1), name.size());
        return std::min(name.find('.', close), name.size());
    }
    return std::min(name.find('.', begin), name.size());
}

std::string_view WithoutEscape(std::string_view name)
{
    if (!name.starts_with('\\'))
        return name;
    name.remove_prefix(1);
    if (name.ends_with(' ') || name.ends_with('\\'))
        name.remove_suffix(1);
    return name;
}

constexpr std::string_view Open = "__BRA__", Close = "__KET__";

std::string EncodedPart(std::string_view part)
{
    constexpr std::string_view Digits = "0123456789abcdef";
    std::string encoded;
    for (const char c : WithoutEscape(part)) {
        const auto code = static_cast<unsigned char>(c);
        if (std::isalnum(code) != 0 || c == '_')
            encoded += c;
        else if (c == '[' || c == '(')
            encoded += Open;
        else if (c == ']' || c == ')')
            encoded += Close;
        else
            encoded += std::string("__0") + Digits[code >> 4] + Digits[code & 15];
    }
    return encoded;
}

char Comparable(char c)
{
    if (c == '(' || c == ')')
        return c == '(' ? '[' : ']';
    return Simulator().hasNineValues ? static_cast<char>(std::tolower(static_cast<unsigned char>(c))) : c;
}

}  // namespace

std::vector<std::string> SplitHierarchicalName(std::string_view name)
{
    std::vector<std::string> parts;
    for (std::size_t begin = 0; begin <= name.size() && !name.empty();) {
        const std::size_t end = FindPartEnd(name, begin);
        parts.emplace_back(name.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

std::string EncodedName(const std::vector<std::string> &parts)
{
    std::string name;
    for (const std::string &part : parts)
        name += (name.empty() ? "" : ".") + EncodedPart(part);
    return name;
}

std::string DecodedName(std::string name)
{
    for (const auto &[code, letter] : {std::pair(Open, "["), std::pair(Close, "]")}) {
        for (std::size_t at = name.find(code); at != std::string::npos; at = name.find(code, at))
            name.replace(at, code.size(), letter);
    }
    return name;
}

bool IsSameName(std::string_view left, std::string_view right)
{
    return std::ranges::equal(WithoutEscape(left), WithoutEscape(right), {}, Comparable, Comparable);
}

}  // namespace tesk::vpi
