#include "tools/examine/valueexamination.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/basedliteral.h"
#include "core/plain/tokenviews.h"
#include "platform/types/typereader.h"
#include "tools/examine/nearname.h"
#include "tools/quote.h"

namespace tesk {

namespace {

using Kestrin::ETypeKind;
using Kestrin::KTypeInfo;

using CFault = std::optional<SValueFault>;

bool IsReadable(const KTypeInfo &type, const std::string &text)
{
    std::array<char, sizeof(double)> bytes;
    return type.GetBytes_OldFormat(text.c_str(), bytes.data(), bytes.size(), 0, 0);
}

std::string Upper(std::string text)
{
    for (char &c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

bool IsBasedLiteral(const std::string &text)
{
    SimpleString::CStr bits;
    return ConvertBasedValue(text.c_str(), 0, -1, bits, true);
}

std::vector<std::string> LiteralsOf(const KTypeInfo &type)
{
    std::vector<std::string> literals;
    const auto description = Kestrin::ReadTypeDescription(type.GetTypeInfoString());
    for (const std::string_view literal : description->literals)
        literals.emplace_back(literal);
    return literals;
}

std::string ListSome(const std::vector<std::string> &literals)
{
    constexpr std::size_t Most = 12;
    std::string list;
    for (std::size_t i = 0; i < std::min(literals.size(), Most); ++i)
        list += " " + Printable(literals[i]);
    return list + (literals.size() > Most ? " ..." : "");
}

std::string IsNoValueOf(const std::string &value, const KTypeInfo &type)
{
    return Quote(value) + " is no value of " + Quote(type.GetTypeIdentifier());
}

CFault ExamineEnumeration(const std::string &value, const KTypeInfo &type)
{
    if (IsReadable(type, value) || IsReadable(type, Upper(value)))
        return std::nullopt;
    const std::vector<std::string> literals = LiteralsOf(type);
    const std::string upper = Upper(value);
    if (std::ranges::any_of(literals, [&](const std::string &literal) { return Upper(literal) == upper; }))
        return std::nullopt;  // words of VHDL in another letter case
    const std::string inside(StripGroup(value, ValueOpen, ValueClose));
    if (inside != value && (IsReadable(type, inside) || IsReadable(type, Upper(inside))))
        return SValueFault{false, Quote(value) + " keeps its quotes", "write " + inside};
    const std::string near = value.size() > 1 ? FindNearName(value, literals) : "";
    return SValueFault{true, IsNoValueOf(value, type),
                       near.empty() ? "its values are" + ListSome(literals) : "did you mean " + near + "?"};
}

CFault ExamineInteger(const std::string &value, const KTypeInfo &type)
{
    if (IsBasedLiteral(value))
        return std::nullopt;
    if (!IsReadable(type, value))
        return SValueFault{true, IsNoValueOf(value, type), "write a whole number of at most 32 bits, such as 42"};
    const auto range = Kestrin::ReadTypeDescription(type.GetTypeInfoString())->range;
    const long long number = std::strtoll(value.c_str(), nullptr, 10);
    const auto [least, most] = std::minmax(range.left, range.right);
    if (!range.constrained || (number >= least && number <= most))
        return std::nullopt;
    return SValueFault{true, IsNoValueOf(value, type),
                       "its values go from " + std::to_string(least) + " to " + std::to_string(most)};
}

CFault ExamineReal(const std::string &value, const KTypeInfo &type)
{
    if (IsReadable(type, value) || (value.starts_with('+') && IsReadable(type, value.substr(1))))
        return std::nullopt;
    return SValueFault{true, IsNoValueOf(value, type), "write a number, such as 3.3"};
}

bool HasOnlyCharacters(const KTypeInfo &type)
{
    return KindOf(type) == ETypeKind::Enumeration &&
           Kestrin::ReadTypeDescription(type.GetTypeInfoString())->hasOnlyCharacters;
}

// The base in which a text of digits was probably meant.
std::string BaseAdvice(const std::string &value)
{
    if (value.find_first_not_of("0123456789") == std::string::npos)
        return "a decimal number is written d\"" + value + "\", a hexadecimal one x\"" + value + "\"";
    if (value.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos)
        return "a hexadecimal number is written x\"" + value + "\"";
    return {};
}

CFault ExamineBits(const std::string &value, const KTypeInfo &type)
{
    const KTypeInfo &element = *type.GetArrayElementKTypeInfo();
    const auto count = static_cast<std::size_t>(type.GetNbOfElements());
    std::string bits(StripGroup(value, ValueOpen, ValueClose));
    SimpleString::CStr converted;
    const bool isBased = ConvertBasedValue(value.c_str(), 0, -1, converted, true);
    if (isBased)
        bits = static_cast<const char *>(converted);
    for (const char letter : bits) {
        if (!ExamineEnumeration(std::string(1, letter), element))
            continue;
        const std::string base = isBased ? "" : BaseAdvice(bits);
        return SValueFault{true, Quote(value) + ": " + IsNoValueOf(std::string(1, letter), element),
                           base.empty() ? "its values are" + ListSome(LiteralsOf(element)) : base};
    }
    if (bits.size() > count)
        return SValueFault{false,
                           Quote(value) + " has " + std::to_string(bits.size()) + " bits for " + std::to_string(count) +
                               ", and loses the leading ones",
                           "write at most " + std::to_string(count)};
    if (bits.size() < count && !isBased && bits.find_first_not_of("01") != std::string::npos)
        return SValueFault{false,
                           Quote(value) + " has " + std::to_string(bits.size()) + " of " + std::to_string(count) +
                               " values, and is filled up with 0 on the left",
                           "write all " + std::to_string(count)};
    return std::nullopt;
}

std::vector<std::string> PartsOf(const std::string &value)
{
    const std::string inside(StripGroup(value, ValueOpen, ValueClose));
    std::vector<std::string> parts;
    std::string_view rest = inside;
    while (true) {
        const std::string_view part = TakeToken(rest, ValueOpen, ValueClose, ElementBlanks);
        if (part.empty())
            return parts;
        parts.emplace_back(part);
    }
}

const KTypeInfo *ElementType(const KTypeInfo &type, std::size_t index)
{
    return KindOf(type) == ETypeKind::Record ? type.GetFieldKTypeInfo(static_cast<int>(index))
                                             : type.GetArrayElementKTypeInfo();
}

CFault ExamineAggregate(const std::string &value, const KTypeInfo &type, std::size_t count)
{
    const std::vector<std::string> parts = PartsOf(value);
    if (parts.size() != count)
        return SValueFault{true,
                           Quote(value) + " has " + std::to_string(parts.size()) + " values for " +
                               std::to_string(count) + " elements of " + Quote(type.GetTypeIdentifier()),
                           count > 1 ? "write one for each in parentheses, such as (1, 0, ...)" : ""};
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const KTypeInfo *element = ElementType(type, i);
        if (element == nullptr)
            break;
        if (CFault fault = ExamineValue(parts[i], *element))
            return fault;
    }
    return std::nullopt;
}

}  // namespace

std::optional<SValueFault> ExamineValue(std::string_view text, const KTypeInfo &type)
{
    constexpr long long MostElements = 1 << 20;  // more are not played
    const std::string value(text);
    switch (KindOf(type)) {
    case ETypeKind::Enumeration: return ExamineEnumeration(value, type);
    case ETypeKind::Integer: return ExamineInteger(value, type);
    case ETypeKind::Real: return ExamineReal(value, type);
    case ETypeKind::Record: return ExamineAggregate(value, type, static_cast<std::size_t>(type.GetNbOfFields()));
    case ETypeKind::Array: break;
    case ETypeKind::Physical:
    case ETypeKind::Invalid: return std::nullopt;
    }
    const long long count = type.GetNbOfElements();
    if (count <= 0 || count > MostElements || type.GetNbOfDimensions() != 1)
        return std::nullopt;
    if (HasOnlyCharacters(*type.GetArrayElementKTypeInfo()))
        return ExamineBits(value, type);
    return ExamineAggregate(value, type, static_cast<std::size_t>(count));
}

}  // namespace tesk
