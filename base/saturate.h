// Integer arithmetic that stops at the largest number.
#pragma once

#include <limits>

namespace tesk {

/// The product, the largest number if it is larger. Neither factor is negative.
constexpr long long MultiplySaturating(long long left, long long right)
{
    constexpr long long Largest = std::numeric_limits<long long>::max();
    return right != 0 && left > Largest / right ? Largest : left * right;
}

/// The sum, the largest number if it is larger. Neither term is negative.
constexpr long long AddSaturating(long long left, long long right)
{
    constexpr long long Largest = std::numeric_limits<long long>::max();
    return left > Largest - right ? Largest : left + right;
}

}  // namespace tesk
