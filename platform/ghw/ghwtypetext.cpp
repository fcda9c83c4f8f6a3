#include "platform/ghw/ghwtypetext.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>
#include <string_view>

#include "base/stdlogic.h"
#include "platform/names/signalname.h"
#include "platform/types/dumptypes.h"

namespace NTARN {
namespace {

// <kind>#<len>#<name>
std::string Head(char kind, std::string_view name)
{
    return std::string(1, kind) + '#' + std::to_string(name.size()) + '#' + std::string(name);
}

std::string IntegerRange(const SGhwRange &range)
{
    return std::string("ric") + (range.isDown ? 'd' : 't') + std::to_string(range.left) + ' ' +
           std::to_string(range.right);
}

// As "%g", but with a point in any locale.
std::string RealText(double value)
{
    constexpr double Largest = std::numeric_limits<double>::max();
    constexpr int Digits = 6;
    char text[32];
    const double finite = std::isnan(value) ? 0 : std::clamp(value, -Largest, Largest);
    const auto end = std::to_chars(std::begin(text), std::end(text), finite, std::chars_format::general, Digits).ptr;
    return {text, end};
}

std::string RealRange(const SGhwRange &range)
{
    return std::string("rrc") + (range.isDown ? 'd' : 't') + RealText(range.realLeft) + ' ' + RealText(range.realRight);
}

// The characters of an enumeration that has nothing else; empty if it has other literals.
std::string CharactersOf(const CGhwStrings &strings, const SGhwType &type)
{
    std::string characters;
    for (const std::uint32_t literal : type.literals) {
        const std::string_view text = strings.Text(literal);
        if (text.size() != 3 || text.front() != '\'' || text.back() != '\'')
            return {};
        characters += text[1];
    }
    return characters;
}

// Literals are divided by blanks; only that of the blank itself may hold one.
std::string LiteralText(std::string_view literal)
{
    std::string text(literal);
    if (text.front() != '\'')
        std::ranges::replace(text, ' ', '_');
    return text;
}

std::string EnumerationText(const CGhwTypes &types, const SGhwType &type)
{
    const SGhwType &base = types.At(type.base);
    const std::string count = std::to_string(base.literals.size());
    const std::string head = Head('e', types.Strings().Text(type.name));
    const std::string characters = CharactersOf(types.Strings(), base);
    if (characters == tesk::StdLogicLetters)
        return std::string(Kestrin::StdLogicTypeText);
    if (!characters.empty())
        return head + 'c' + count + ' ' + characters;
    std::string text = head + 's' + count + ' ';
    for (const std::uint32_t literal : base.literals)
        text += LiteralText(types.Strings().Text(literal)) + ' ';
    return text;
}

std::string ArrayText(const CGhwTypes &types, const SGhwType &type)
{
    std::string name(types.Strings().Text(type.name));
    std::string ranges;
    for (const SGhwRange &range : type.dimensions) {
        name += ranges.empty() ? '(' : ',';
        name += std::to_string(range.left) + (range.isDown ? " downto " : " to ") + std::to_string(range.right);
        ranges += IntegerRange(range) + ' ';
    }
    return Head('a', name + ')') + std::to_string(type.dimensions.size()) + ' ' + ranges +
           GhwTypeText(types, type.element);
}

std::string RecordText(const CGhwTypes &types, const SGhwType &type)
{
    std::string text = Head('r', types.Strings().Text(type.name)) + std::to_string(type.fields.size());
    for (const SGhwField &field : type.fields)
        text += ' ' + SpellSignalName(types.Strings().Text(field.name)) + ' ' + GhwTypeText(types, field.type);
    return type.fields.empty() ? text + ' ' : text;
}

}  // namespace

std::string GhwTypeText(const CGhwTypes &types, std::uint32_t place)
{
    const SGhwType &type = types.At(place);
    const std::string_view name = types.Strings().Text(type.name);
    switch (type.kind) {
    case EGhwKind::Enumeration: return EnumerationText(types, type);
    case EGhwKind::Integer: return Head('i', name) + IntegerRange(type.range);
    case EGhwKind::Real: return Head('f', name) + RealRange(type.range);
    case EGhwKind::Array: return ArrayText(types, type);
    case EGhwKind::Record: return RecordText(types, type);
    default: return Head('p', name) + IntegerRange(type.range);
    }
}

}  // namespace NTARN
