// TKc_decConverter, a number of up to 64 bits from radix text.
#pragma once

#include "base/export.h"
#include "settings/cstr.h"

/// A number of up to 64 bits with a sign, read from text in radix 2, 8, 10 or 16.
class TESK_API TKc_decConverter {
public:
    TKc_decConverter() = default;

    /// Reads [ "-" ] digits in any letter case, white space around them. Of more digits than 64 bits hold in radix 2, 8
    /// or 16 (64, 21, 16) the highest are ignored.
    /// @return false for a null or blank text, another radix, or a character that is no digit. Deliberate: in radix 10
    ///         reading stops at such a character, and any text that is not blank is good. A failure leaves 0
    bool Convert(const char *text, int radix);
    /// Reads <radix> "#" [ "-" ] digits. @return false without a '#', too; the number then stays
    bool Convert(const char *text);

    /// The number; one that needs all 64 bits wraps.
    long long GetValue() const;

    /// Writes the number in binary, a negative one as its 64-bit two's complement.
    /// @param width  exact number of digits, filled up with "0" on the left (deliberate: for a negative number too) or
    ///               cut to the low ones; -1 for as many as there are, none for the value 0
    /// @return false if the magnitude needs more bits than `width`; `text` is set all the same
    bool MakeBin(int width, SimpleString::CStr &text) const;

private:
    TESK_LOCAL bool convert(SimpleString::CStr &text, int radix);

    const char *m_digits = nullptr;  // the digits of the radix in use; static text
    unsigned long long m_magnitude = 0;
    bool m_negative = false;
};
