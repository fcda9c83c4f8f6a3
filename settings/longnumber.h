// CLongNumber, a number of any length from radix text.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/export.h"

/// A number of any length with a sign, read from text and written in binary.
class TESK_API CLongNumber {
public:
    /// Reads [ "-" ] [ radix "#" ] digits, such as "255", "-5" or "16#ff". A text that is no number is not refused:
    /// `IsNumber` then says false.
    /// @param text   may be null, which is no number
    /// @param radix  2, 8, 10 or 16, of digits without a prefix; no other is known
    CLongNumber(const char *text, unsigned radix);

    /// Whether the text was a number.
    bool IsNumber() const { return !m_words.empty(); }

    /// Number of bits that the value needs: at least 1, one more for a negative number, 0 if the text was no number.
    /// Deliberate: leading zeros in radix 2, 8 and 16 count by whole words of 32 bits.
    unsigned BitLength() const;

    /// Writes the number in binary, a negative one in two's complement; "0" if the text was no number.
    /// @param buffer  receives at most `digits` characters, or the "0", and a terminating zero
    /// @param digits  of a number that needs more only the low bits are written
    /// @param pad     fills up to `digits` on the left with "0"; a negative number is always filled, with "1"
    /// @return whether the number fits
    bool ToBinaryText(char *buffer, int digits, bool pad) const;
    bool ToBinaryText(std::string &text, int digits, bool pad) const;

private:
    TESK_LOCAL std::size_t MagnitudeBits() const;

    std::vector<std::uint32_t> m_words;  // the magnitude, lowest word first; empty if the text was no number
    bool m_negative = false;
};
