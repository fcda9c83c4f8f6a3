#include "platform/vcd/vcdvariable.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstdlib>
#include <iterator>

#include "platform/names/signalname.h"
#include "platform/types/dumptypes.h"
#include "platform/vcd/vcdtext.h"
#include "platform/vcd/vcdwords.h"

namespace NTARN::NImport {

namespace {

// -- Variables

constexpr std::string_view RealTypes[] = {"real", "realtime", "shortreal", "real_parameter"};

struct SRange {
    int left = 0;
    int right = 0;

    long long Length() const { return std::llabs(static_cast<long long>(left) - right) + 1; }
};

// The whole of `text` is a number.
template <class T>
bool ReadNumber(std::string_view text, T &number)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

// [left:right]
bool ReadRange(std::string_view text, SRange &range)
{
    const std::size_t colon = text.find(':');
    return text.size() >= 2 && text.front() == '[' && text.back() == ']' && colon != std::string_view::npos &&
           ReadNumber(text.substr(1, colon - 1), range.left) &&
           ReadNumber(text.substr(colon + 1, text.size() - colon - 2), range.right);
}

// Takes a range off the end of `name`, but none of its first `escaped` bytes.
bool DropRange(std::string_view &name, std::size_t escaped, SRange &range)
{
    const std::size_t bracket = name.rfind('[');
    if (bracket == std::string_view::npos || bracket < escaped || !ReadRange(name.substr(bracket), range))
        return false;
    name.remove_suffix(name.size() - bracket);
    return true;
}

struct SReference {
    std::string text;         // name and what is in brackets behind it
    std::size_t escaped = 0;  // length of an escaped name, or of an extended identifier
};

// Joins the words of a reference. What is in brackets stands without blanks.
SReference ReadReference(std::string_view rest)
{
    SReference reference;
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    // Blanks may stand in an extended identifier, but not in an escaped one, which ends at the first.
    const std::size_t extended = tesk::ExtendedLength(rest);
    if (extended > 0 && (extended == rest.size() || rest[extended] == ' ' || rest[extended] == '[')) {
        reference.text = rest.substr(0, extended);
        rest.remove_prefix(extended);
        reference.escaped = extended;
    } else if (rest.starts_with('\\')) {
        reference.text = TakeVcdWord(rest);
        reference.escaped = reference.text.size();
    }
    bool isOpen = false;
    for (std::string_view word = TakeVcdWord(rest); !word.empty(); word = TakeVcdWord(rest)) {
        if (!reference.text.empty() && !isOpen && word.front() != '[')
            reference.text += ' ';
        reference.text += word;
        if (const std::size_t bracket = word.find_last_of("[]"); bracket != std::string_view::npos)
            isOpen = word[bracket] == '[';
    }
    return reference;
}

// Whether ranges behind the name, which are taken off it, have lengths that multiply to `width`.
bool DropPackedRanges(std::string_view &name, std::size_t escaped, long long width)
{
    SRange range;
    long long product = 1;
    while (product < width && DropRange(name, escaped, range))
        product = range.Length() <= width / product ? product * range.Length() : LLONG_MAX;
    return product == width;
}

// Gives the variable its name and its range.
void SetReference(SVcdVariable &variable, const SReference &reference)
{
    SRange range{static_cast<int>(variable.width) - 1, 0};
    std::string_view name = reference.text;
    SRange written;
    if (DropRange(name, reference.escaped, written)) {
        std::string_view packed = reference.text;
        if (variable.kind == EVcdKind::Bus && written.Length() == variable.width)
            range = written;
        else if (variable.kind == EVcdKind::Bus && DropPackedRanges(packed, reference.escaped, variable.width))
            name = packed;
    }
    const std::string_view identifier = name.substr(0, std::min(reference.escaped, name.size()));
    variable.name = SpellSignalName(identifier) + SpellSignalName(name.substr(identifier.size()));
    variable.left = range.left;
    variable.right = range.right;
}

// The width of a variable is a number, that of a port may be a range instead.
std::uint32_t ReadWidth(std::string_view text, std::string &range)
{
    constexpr long long Widest = INT_MAX;
    SRange bounds;
    long long width = 0;
    if (ReadRange(text, bounds)) {
        range = text;
        width = bounds.Length();
    } else if (!ReadNumber(text, width) || width < 0) {
        throw SVcdFault{"a variable has the width " + QuoteVcdWord(text) + ", which is no number up to 2147483647"};
    }
    if (width > Widest)
        throw SVcdFault{"a variable is wider than 2147483647 bits"};
    return static_cast<std::uint32_t>(width);
}

EVcdKind KindOf(std::string_view type, std::uint32_t width)
{
    if (type == "string")
        return EVcdKind::String;
    if (std::ranges::find(RealTypes, type) != std::end(RealTypes))
        return EVcdKind::Real;
    if (width == 0)
        return EVcdKind::Empty;
    return width == 1 ? EVcdKind::Bit : EVcdKind::Bus;
}

// -- Times

struct SUnit {
    std::string_view name;
    long long femtoseconds;
};

constexpr SUnit Units[] = {{"fs", 1},          {"ps", 1000},          {"ns", 1000000},
                           {"us", 1000000000}, {"ms", 1000000000000}, {"s", 1000000000000000}};

constexpr const char *TimescaleAdvice = "; use 1, 10 or 100 of s, ms, us, ns, ps or fs";

// A number as it was written, "0.1".
struct SDecimal {
    long long digits = 1;
    std::size_t places = 0;  // of them, behind the point
};

// No text is 1.
bool ReadDecimal(std::string_view text, SDecimal &number)
{
    if (text.empty())
        return true;
    const std::size_t point = text.find('.');
    std::string digits(text.substr(0, point));
    if (point != text.npos) {
        std::string_view places = text.substr(point + 1);
        places.remove_suffix(places.size() - (places.find_last_not_of('0') + 1));
        digits += places;
        number.places = places.size();
    }
    return ReadNumber(std::string_view(digits), number.digits);
}

// @return 0 if it is not whole, or does not fit
long long Multiply(SDecimal number, long long femtoseconds)
{
    for (; number.places > 0 && femtoseconds % 10 == 0; --number.places)
        femtoseconds /= 10;
    return number.places == 0 && number.digits <= LLONG_MAX / femtoseconds ? number.digits * femtoseconds : 0;
}

// `femtoseconds` and `zeros` zeros behind it.
std::string ScaledText(std::string femtoseconds, std::size_t zeros)
{
    std::size_t unit = 0;
    femtoseconds.append(zeros, '0');
    for (; unit + 1 < std::size(Units) && femtoseconds.ends_with("000"); ++unit)
        femtoseconds.resize(femtoseconds.size() - 3);
    return femtoseconds.append(" ").append(Units[unit].name);
}

}  // namespace

SVcdVariable ReadVcdVariable(std::string_view body)
{
    SVcdVariable variable;
    const std::string_view type = TakeVcdWord(body);
    std::string_view width = TakeVcdWord(body);
    if (type == "real" && width == "parameter")
        width = TakeVcdWord(body);
    variable.code = TakeVcdWord(body);
    if (variable.code.empty())
        throw SVcdFault{"a variable without a width or an identifier code"};
    std::string range;
    variable.width = type == "event" ? 1 : ReadWidth(width, range);
    variable.kind = KindOf(type, variable.width);
    if (variable.kind == EVcdKind::Real)
        variable.width = 1;
    SReference reference = ReadReference(body);
    if (reference.text.empty())
        throw SVcdFault{"a variable without a name"};
    reference.text += range;
    SetReference(variable, reference);
    return variable;
}

std::string VcdTypeText(const SVcdVariable &variable)
{
    switch (variable.kind) {
    case EVcdKind::Real: return std::string(Kestrin::RealTypeText);
    case EVcdKind::Bus: return Kestrin::BusTypeText(variable.left, variable.right);
    default: return std::string(Kestrin::StdLogicTypeText);
    }
}

long long ReadVcdTimescale(std::string_view body)
{
    std::string text;
    for (std::string_view word = TakeVcdWord(body); !word.empty(); word = TakeVcdWord(body))
        text += word;
    const std::size_t digits = std::min(text.find_first_not_of("0123456789."), text.size());
    const auto found = std::ranges::find(Units, std::string_view(text).substr(digits), &SUnit::name);
    SDecimal number;
    if (found == std::end(Units) || !ReadDecimal(std::string_view(text).substr(0, digits), number))
        throw SVcdFault{"unknown timescale " + QuoteVcdWord(text) + TimescaleAdvice};
    const long long femtoseconds = Multiply(number, found->femtoseconds);
    if (femtoseconds == 0)
        throw SVcdFault{"the timescale " + QuoteVcdWord(text) + " is no whole number of femtoseconds" +
                        TimescaleAdvice};
    return femtoseconds;
}

std::string VcdTimeText(long long ticks, long long resolution)
{
    if (ticks == 0)
        return "0 s";
    std::size_t zeros = 0;
    for (; resolution % 10 == 0; resolution /= 10)
        ++zeros;
    // Only with numbers other than 1, 10 and 100: of what does not fit the leading digits count.
    for (; ticks > LLONG_MAX / resolution; ++zeros)
        (ticks > resolution ? ticks : resolution) /= 10;
    return ScaledText(std::to_string(ticks * resolution), zeros);
}

}  // namespace NTARN::NImport
