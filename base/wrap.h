// Integer arithmetic and conversion whose every result is defined: overflow wraps, no division traps.
#pragma once

#include <cstdlib>
#include <limits>

namespace tesk {

constexpr long long WrapAdd(long long left, long long right)
{
    return static_cast<long long>(static_cast<unsigned long long>(left) + static_cast<unsigned long long>(right));
}

constexpr long long WrapSubtract(long long left, long long right)
{
    return static_cast<long long>(static_cast<unsigned long long>(left) - static_cast<unsigned long long>(right));
}

constexpr long long WrapMultiply(long long left, long long right)
{
    return static_cast<long long>(static_cast<unsigned long long>(left) * static_cast<unsigned long long>(right));
}

/// Truncates toward zero. The smallest number divided by -1 wraps to itself; `divisor` must not be 0.
constexpr long long WrapDivide(long long dividend, long long divisor)
{
    return divisor == -1 ? WrapSubtract(0, dividend) : dividend / divisor;
}

/// The remainder has the sign of `dividend`; `divisor` must not be 0.
constexpr long long WrapModulo(long long dividend, long long divisor)
{
    return divisor == -1 ? 0 : dividend % divisor;
}

/// Truncates toward zero. A value outside the range, or no number at all, becomes the smallest integer.
constexpr long long TruncateToInt64(double value)
{
    constexpr double Limit = 9223372036854775808.0;  // 2^63
    if (value >= -Limit && value < Limit)
        return static_cast<long long>(value);
    return std::numeric_limits<long long>::min();
}

/// Reads a decimal integer as `atoi` does; of a number that does not fit, the low 32 bits count.
inline int ReadInt(const char *text)
{
    return static_cast<int>(static_cast<unsigned>(std::strtoll(text, nullptr, 10)));
}

}  // namespace tesk
