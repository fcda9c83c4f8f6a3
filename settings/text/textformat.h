// printf-style composition with the format language of SimpleString::CStr.
#pragma once

#include <cstdarg>
#include <string>

namespace tesk {

struct SFormattedText {
    std::string text;
    long long bound;  ///< the room that is reserved for it: an estimate from above, at most 2^30
};

/// Composes `format`, a null one being empty. It differs from `printf` in this: "I64", "ll" and "q" mark 64-bit
/// integers, `L`, `F` and `N` are skipped, `%S` is wide and `%hS` narrow text. The bound starts at 128 and adds an
/// allowance for each item. Real numbers have a point in every locale. `arguments` is not consumed.
SFormattedText FormatText(const char *format, va_list arguments);

}  // namespace tesk
