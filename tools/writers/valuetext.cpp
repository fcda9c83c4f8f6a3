#include "tools/writers/valuetext.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/kestrin.h"
#include "tools/commandline.h"
#include "tools/writers/valuekind.h"

namespace tesk {

namespace {

constexpr int EnumerationKind = 1;
constexpr int ArrayKind = 4;

constexpr struct {
    const char *name;
    ERadix radix;
} Radixes[] = {{"bin", ERadix::Binary},
               {"oct", ERadix::Octal},
               {"dec", ERadix::Decimal},
               {"hex", ERadix::Hexadecimal},
               {"signed", ERadix::Signed},
               {"analog", ERadix::Analog},
               {"analog-signed", ERadix::AnalogSigned}};

// The letter of bits that are not all known; 0 if they are.
char UnknownLetter(std::string_view bits)
{
    const auto count = [&](char letter) { return std::ranges::count(bits, letter); };
    const auto all = std::ssize(bits);
    const auto unknown = count('x');
    const auto high = count('z');
    if (unknown + high == 0)
        return 0;
    if (unknown != 0)
        return unknown == all ? 'x' : 'X';
    return high == all ? 'z' : 'Z';
}

// Bits from the right in groups, each a digit.
std::string Digits(const std::string &bits, std::size_t group)
{
    std::string digits;
    for (std::size_t left = bits.size(); left > 0;) {
        const std::size_t length = left % group == 0 ? group : left % group;
        const std::string_view part = std::string_view(bits).substr(bits.size() - left, length);
        left -= length;
        const char unknown = UnknownLetter(part);
        std::size_t digit = 0;
        for (const char bit : part)
            digit = 2 * digit + (bit == '1' ? 1 : 0);
        digits += unknown != 0 ? unknown : "0123456789ABCDEF"[digit];
    }
    return digits;
}

// 0 and 1 as a number.
std::string Decimal(const std::string &bits)
{
    constexpr std::uint64_t Base = 1'000'000'000;
    std::vector<std::uint64_t> limbs = {0};  // the lowest first
    for (const char bit : bits) {
        std::uint64_t carry = bit == '1' ? 1 : 0;
        for (std::uint64_t &limb : limbs) {
            carry += 2 * limb;
            limb = carry % Base;
            carry /= Base;
        }
        if (carry != 0)
            limbs.push_back(carry);
    }
    std::string text = std::to_string(limbs.back());
    for (std::size_t i = limbs.size() - 1; i-- > 0;) {
        const std::string digits = std::to_string(limbs[i]);
        text += std::string(9 - digits.size(), '0') + digits;
    }
    return text;
}

// The two's complement of bits.
std::string Negated(std::string bits)
{
    bool carries = true;
    for (std::size_t i = bits.size(); i-- > 0;) {
        const bool bit = (bits[i] == '0') != carries;  // flipped, and one added
        carries = carries && bits[i] == '0';
        bits[i] = bit ? '1' : '0';
    }
    return bits;
}

std::string WholeNumber(const std::string &bits, bool isSigned)
{
    const char unknown = UnknownLetter(bits);
    if (unknown != 0)
        return {unknown};
    return isSigned && bits.starts_with('1') ? '-' + Decimal(Negated(bits)) : Decimal(bits);
}

bool IsShownInRadix(const STrace &trace)
{
    if (!trace.type.empty())
        return IsBitVectorType(trace.type);
    return !trace.IsElement() && std::ranges::all_of(trace.changes, [](const SChange &change) {
        return !change.value || change.value->empty() || IsBitText(*change.value);
    });
}

}  // namespace

std::set<std::string> RadixNames()
{
    std::set<std::string> names;
    for (const auto &row : Radixes)
        names.insert(row.name);
    return names;
}

std::optional<ERadix> RadixOf(const std::string &name)
{
    for (const auto &row : Radixes) {
        if (name == row.name)
            return row.radix;
    }
    return std::nullopt;
}

char FourStateLetter(char c)
{
    constexpr std::string_view Letters = "0Ll1HhZzXxUuWw-";
    constexpr std::string_view States = "000111zzxxxxxxx";
    const std::size_t index = Letters.find(c);
    return index != Letters.npos ? States[index] : '\0';
}

bool IsBitText(const std::string &value)
{
    return !value.empty() && std::ranges::all_of(value, [](char c) { return FourStateLetter(c) != 0; });
}

bool IsBitVectorType(const std::string &description)
{
    const Kestrin::KTypeInfo type(description.c_str());
    const Kestrin::KTypeInfo *element = type.GetArrayElementKTypeInfo();
    if (type.GetKind() != ArrayKind || type.GetNbOfDimensions() != 1 || element == nullptr ||
        element->GetKind() != EnumerationKind)
        return false;
    constexpr unsigned MostLiterals = 16;
    for (unsigned position = 0; position < MostLiterals; ++position) {
        const std::array<unsigned char, 2> bytes = {static_cast<unsigned char>(position), 0};
        const std::string literal = element->GetValueString_OldFormat(bytes.data(), 0, 0, 0, false);
        if (literal.empty())
            return position > 0;
        if (literal.size() != 1 || FourStateLetter(literal[0]) == 0)
            return false;
    }
    return false;
}

bool IsBusType(const std::string &description)
{
    return !description.empty() && Kestrin::KTypeInfo(description.c_str()).GetKind() != EnumerationKind;
}

std::string BitsInRadix(const std::string &bits, ERadix radix)
{
    std::string letters;
    for (const char c : bits) {
        const char letter = FourStateLetter(c);
        letters += letter != 0 ? letter : 'x';
    }
    switch (radix) {
    case ERadix::Octal: return Digits(letters, 3);
    case ERadix::Hexadecimal: return Digits(letters, 4);
    case ERadix::Decimal: return WholeNumber(letters, false);
    case ERadix::Analog: return WholeNumber(letters, false);
    case ERadix::Signed:
    case ERadix::AnalogSigned: return WholeNumber(letters, true);
    default: return bits;
    }
}

bool IsSignedType(const std::string &description)
{
    const Kestrin::KTypeInfo type(description.c_str());
    std::string name = type.GetTypeIdentifier();
    std::ranges::transform(name, name.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return type.IsSigned() || name.starts_with("signed");
}

std::optional<double> NumberOf(const std::string &value)
{
    double number = 0;
    const char *end = value.data() + value.size();
    const auto result = std::from_chars(value.data(), end, number);
    return result.ec == std::errc() && result.ptr == end && std::isfinite(number) ? std::optional(number)
                                                                                  : std::nullopt;
}

std::string IntegerText(const std::string &value)
{
    const std::size_t mark = value.find('#');
    if (mark == std::string::npos)
        return value;
    int base = 0;
    const auto head = std::from_chars(value.data(), value.data() + mark, base);
    if (head.ec != std::errc() || head.ptr != value.data() + mark || base < 2 || base > 16)
        return value;
    const std::size_t end = std::min(value.find('#', mark + 1), value.size());
    std::uint64_t number = 0;
    const auto digits = std::from_chars(value.data() + mark + 1, value.data() + end, number, base);
    if (digits.ec != std::errc() || digits.ptr != value.data() + end || end == mark + 1 || number > UINT32_MAX)
        return value;
    return std::to_string(static_cast<std::int32_t>(static_cast<std::uint32_t>(number)));
}

void ShowInRadix(SWaveform &waveform, ERadix radix)
{
    const bool isAnalog = radix == ERadix::Analog || radix == ERadix::AnalogSigned;
    const bool isDecimal = isAnalog || radix == ERadix::Decimal || radix == ERadix::Signed;
    for (STrace &trace : waveform.traces) {
        if (!IsShownInRadix(trace)) {
            trace.isCurve = trace.isCurve || (isAnalog && KindOfValues(trace).kind == EValueKind::Integer);
            continue;
        }
        const ERadix shown = radix == ERadix::Analog && IsSignedType(trace.type) ? ERadix::AnalogSigned : radix;
        trace.isBus = trace.isBus || !trace.type.empty();
        for (SChange &change : trace.changes) {
            if (!change.value)
                continue;
            if (isDecimal && change.value->size() > WidestDecimal)
                throw CRefusal("--radix: a bus of more than " + std::to_string(WidestDecimal) +
                               " bits is shown in bin, oct or hex only");
            trace.isBus = trace.isBus || change.value->size() > 1;
            change.value = BitsInRadix(*change.value, shown);
        }
        trace.isCurve = isAnalog && trace.isBus;
    }
}

void DrawRealsAsCurves(SWaveform &waveform)
{
    for (STrace &trace : waveform.traces)
        trace.isCurve = trace.isCurve || KindOfValues(trace).kind == EValueKind::Real;
}

}  // namespace tesk
