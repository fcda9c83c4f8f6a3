#include "core/basedliteral.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>
#include <string>
#include <string_view>

#include "base/ascii.h"
#include "settings/longnumber.h"
#include "settings/number/bitwords.h"

namespace {

struct SBase {
    std::string_view letters;
    unsigned radix;
    std::size_t digitBits;
};

constexpr std::array<SBase, 4> Bases = {{{"Bb", 2, 1}, {"Oo", 8, 3}, {"Dd", 10, 4}, {"Xx", 16, 4}}};

// The letters that an octal or hexadecimal digit may be instead.
constexpr std::string_view StateLetters = "-HLUWXZxz";

struct SLiteral {
    unsigned radix = 0;
    std::string digits;
    bool negative = false;
};

// Index of the first '#' outside "..." and '...', or npos. An unclosed quote takes the rest.
std::size_t FindBaseMark(std::string_view text)
{
    char closer = 0;  // the quote waited for; 0 outside quotes
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (closer != 0)
            closer = c == closer ? '\0' : closer;
        else if (c == '"' || c == '\'')
            closer = c;
        else if (c == '#')
            return i;
    }
    return std::string_view::npos;
}

std::string_view UpToClosingQuote(std::string_view digits)
{
    return digits.substr(0, digits.find('"'));
}

// x"..."
bool ReadLetterForm(std::string_view text, SLiteral &literal)
{
    const auto hasLetter = [&](const SBase &base) { return base.letters.find(text.front()) != std::string_view::npos; };
    const auto base = std::ranges::find_if(Bases, hasLetter);
    if (base == Bases.end())
        return false;
    literal.radix = base->radix;
    literal.digits = UpToClosingQuote(text.substr(2));
    return true;
}

// 16#...
bool ReadNumberForm(std::string_view text, std::size_t mark, SLiteral &literal)
{
    literal.negative = text.front() == '-';
    const std::string number(text.substr(0, mark));
    const long long radix = std::strtoll(number.c_str() + (literal.negative ? 1 : 0), nullptr, 10);
    const auto base = std::ranges::find(Bases, radix, &SBase::radix);
    if (base == Bases.end())
        return false;
    literal.radix = base->radix;
    literal.digits = UpToClosingQuote(text.substr(mark + 1));
    return true;
}

bool ReadLiteral(std::string_view text, unsigned defaultRadix, SLiteral &literal)
{
    const std::size_t mark = FindBaseMark(text);
    const bool quoted = text.size() > 1 && text[1] == '"';
    if (quoted && mark == std::string_view::npos)
        return ReadLetterForm(text, literal);
    if (quoted || (mark != std::string_view::npos && mark + 1 < text.size()))
        return ReadNumberForm(text, mark, literal);
    literal.radix = defaultRadix;
    literal.digits = UpToClosingQuote(text);
    return defaultRadix != 0;
}

std::size_t DigitBits(unsigned radix)
{
    const auto base = std::ranges::find(Bases, radix, &SBase::radix);
    return base != Bases.end() ? base->digitBits : 0;
}

int NaturalWidth(const SLiteral &literal)
{
    return static_cast<int>(std::min<std::size_t>(literal.digits.size() * DigitBits(literal.radix), INT_MAX));
}

std::string NumberBits(const CLongNumber &number, int width, bool atLeastWidth)
{
    const int needed = static_cast<int>(std::min<unsigned>(number.BitLength(), INT_MAX));
    std::string bits;
    number.ToBinaryText(bits, atLeastWidth ? std::max(needed, width) : width, false);
    return bits;
}

// @return false if a character is neither a digit of the radix nor a state letter
bool ExpandDigits(const SLiteral &literal, std::string &bits)
{
    const std::size_t digitBits = DigitBits(literal.radix);
    for (const char c : literal.digits) {
        if (StateLetters.find(c) != std::string_view::npos) {
            bits.append(digitBits, c);
            continue;
        }
        const unsigned value = static_cast<unsigned>(tesk::DigitValue(c));
        if (value >= literal.radix)
            return false;
        for (std::size_t bit = digitBits; bit-- > 0;)
            bits += (value >> bit & 1) != 0 ? '1' : '0';
    }
    return true;
}

// The digits of a literal that is no number. @return false in radix 10, which has no state letters
bool StateBits(const SLiteral &literal, std::string &bits)
{
    if (literal.radix != 2 && literal.radix != 8 && literal.radix != 16)
        return false;
    if (literal.radix == 2 || !ExpandDigits(literal, bits))
        bits = literal.digits;
    return true;
}

}  // namespace

bool ConvertBasedValue(const char *text, unsigned defaultRadix, int width, SimpleString::CStr &bits, bool atLeastWidth)
{
    SLiteral literal;
    if (text == nullptr || !ReadLiteral(text, defaultRadix, literal))
        return false;
    const CLongNumber number(literal.digits.c_str(), literal.radix);
    std::string value;
    if (number.IsNumber())
        value = NumberBits(number, width != -1 ? width : NaturalWidth(literal), atLeastWidth);
    else if (!StateBits(literal, value))
        return false;
    if (literal.negative)
        value.insert(0, 1, '-');
    bits = value.c_str();
    return true;
}
