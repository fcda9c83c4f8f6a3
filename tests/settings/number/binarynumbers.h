// Arithmetic on texts of decimal and binary digits, done digit by digit: what the tests of the number classes compare
// with.
#pragma once

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>
#include <string_view>

namespace reference {

// The low `width` bits, with zeros in front where there are fewer.
inline std::string Fit(const std::string &bits, std::size_t width)
{
    if (bits.size() >= width)
        return bits.substr(bits.size() - width);
    return std::string(width - bits.size(), '0') + bits;
}

// Without leading zeros, at least one digit.
inline std::string Strip(const std::string &bits)
{
    const std::size_t first = bits.find('1');
    return first == std::string::npos ? "0" : bits.substr(first);
}

// The sum within the longer of the two lengths.
inline std::string Add(std::string left, std::string right)
{
    const std::size_t width = std::max(left.size(), right.size());
    left = Fit(left, width);
    right = Fit(right, width);
    int carry = 0;
    for (std::size_t i = width; i-- > 0;) {
        const int sum = (left[i] - '0') + (right[i] - '0') + carry;
        left[i] = static_cast<char>('0' + sum % 2);
        carry = sum / 2;
    }
    return left;
}

inline std::string Invert(std::string bits)
{
    for (char &bit : bits)
        bit = bit == '0' ? '1' : '0';
    return bits;
}

// Two's complement within the length.
inline std::string Negate(const std::string &bits)
{
    return bits.empty() ? bits : Add(Invert(bits), "1");
}

inline std::string Subtract(const std::string &left, const std::string &right)
{
    return Add(left, Negate(Fit(right, left.size())));
}

// By halving.
inline std::string FromDecimal(std::string digits)
{
    std::string bits;
    while (digits.find_first_not_of('0') != std::string::npos) {
        int rest = 0;
        for (char &digit : digits) {
            const int value = rest * 10 + (digit - '0');
            digit = static_cast<char>('0' + value / 2);
            rest = value % 2;
        }
        bits += static_cast<char>('0' + rest);
    }
    std::reverse(bits.begin(), bits.end());
    return Strip(bits);
}

// A digit is its value in `digitBits` bits: 1, 3 or 4.
inline std::string FromPowerOfTwo(std::string_view digits, int digitBits)
{
    std::string bits;
    for (const char digit : digits) {
        const std::size_t value = std::string_view("0123456789abcdef").find(digit);
        for (int bit = digitBits; bit-- > 0;)
            bits += (value >> bit & 1) != 0 ? '1' : '0';
    }
    return bits;
}

inline std::string FromRadix(const std::string &digits, unsigned radix)
{
    switch (radix) {
    case 2: return FromPowerOfTwo(digits, 1);
    case 8: return FromPowerOfTwo(digits, 3);
    case 16: return FromPowerOfTwo(digits, 4);
    default: return FromDecimal(digits);
    }
}

inline std::size_t Below(std::mt19937 &random, std::size_t limit)
{
    return random() % limit;
}

inline std::string RandomDigits(std::mt19937 &random, unsigned radix, std::size_t count)
{
    std::string digits;
    while (digits.size() < count)
        digits += "0123456789abcdef"[Below(random, radix)];
    return digits;
}

}  // namespace reference
