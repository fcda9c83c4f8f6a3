// Characters of ASCII, whatever locale the host has set.
#pragma once

namespace tesk {

constexpr bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// White space as `isspace` of the "C" locale tells it: blank, tab, line feed, vertical tab, form feed, return.
constexpr bool IsSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// What `DigitValue` gives for a character that is no digit; no radix is greater.
inline constexpr int NoDigit = 16;

/// The value of a hexadecimal digit in any letter case, `NoDigit` for another character.
constexpr int DigitValue(char c)
{
    if (IsDigit(c))
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return NoDigit;
}

}  // namespace tesk
