// Based literals: x"1F", 16#1F and the like.
#pragma once

#include "base/export.h"
#include "settings/cstr.h"

/// Writes the value of a based literal in binary, without leading zeros, "0" for the value 0.
///
/// Forms: B"...", O"...", D"...", X"..." in any letter case; and [ "-" ] radix "#" digits with radix 2, 8, 10 or 16. A
/// '#' in quotes, or at the end, makes no base. Digits that are no number but hold state letters are kept in radix 2
/// and expanded to three or four bits each in radix 8 and 16: x"1Z" is "0001ZZZZ". If that fails too, they are kept as
/// they stand. A leading "-" stays in front of the bits.
/// @param text          may be null, which is no literal
/// @param defaultRadix  of a text without a base; 0 refuses those
/// @param width         the value is cut to that many low bits, and a negative number of digits written in that many;
///                      -1 takes as many as the digits can have
/// @param bits          left alone on failure
/// @param atLeastWidth  a value that needs more bits than `width` gets them
/// @return false if the text is no based literal
TESK_API bool ConvertBasedValue(const char *text, unsigned defaultRadix, int width, SimpleString::CStr &bits,
                                bool atLeastWidth);
