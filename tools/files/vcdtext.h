// What the two writers of value change dumps share (IEEE 1364-2005, clause 18).
#pragma once

#include <string>

/// A time scale is 1, 10 or 100 of a unit up to seconds; what the resolution has beyond that multiplies the times.
struct SVcdTimeScale {
    std::string text;
    long long factor;
};
/// @param resolution  femtoseconds per tick, at least 1
SVcdTimeScale VcdTimeScale(long long resolution);

/// "#12000"
std::string VcdTimeStamp(long long ticks, const SVcdTimeScale &scale);

/// The identifier code of variable number `index`: printable characters from '!' on, as digits.
std::string VcdCode(std::size_t index);

/// A number in two's complement.
std::string VcdBits(unsigned long long number, int width);

/// Blanks and what a line cannot hold are escaped, as viewers read strings.
std::string VcdEscapedText(const std::string &text);
