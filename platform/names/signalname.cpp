#include "platform/names/signalname.h"

#include <algorithm>

namespace NTARN {

using tesk::ExtendedLength;
namespace {

constexpr std::string_view BehindAnIdentifier = " .[(";

std::string WithBrackets(std::string_view name)
{
    std::string spelled(name);
    std::ranges::replace(spelled, '(', '[');
    std::ranges::replace(spelled, ')', ']');
    return spelled;
}

// An extended identifier, and nothing behind it that would belong to an escaped one.
bool IsExtended(std::string_view name)
{
    const std::size_t length = ExtendedLength(name);
    return length == name.size() || (length > 0 && BehindAnIdentifier.find(name[length]) != std::string_view::npos);
}

}  // namespace

std::string SpellSignalName(std::string_view name)
{
    const std::string bracketed = WithBrackets(name);
    if (!name.starts_with('\\') || IsExtended(name))
        return bracketed;
    std::string spelled = "\\";
    for (const char letter : std::string_view(bracketed).substr(1))
        spelled.append(letter == '\\' ? 2 : 1, letter);
    return spelled + '\\';
}

std::string VerilogName(std::string_view name)
{
    if (name.size() < 3 || ExtendedLength(name) != name.size())
        return std::string(name);
    const std::string_view inner = name.substr(1, name.size() - 2);
    const bool isVerilog = std::ranges::all_of(inner, [](char c) { return c > ' ' && c < 127 && c != '\\'; });
    return std::string(isVerilog ? name.substr(0, name.size() - 1) : name);
}

}  // namespace NTARN
