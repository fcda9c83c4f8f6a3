// Eight decimal digits at once.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace tesk {

/// Reads the number of the eight bytes at `text` in three multiplications, each of which joins neighbours: digits to
/// numbers of two digits, these to numbers of four, these to one of eight.
/// @return false, with `number` left alone, if one of the bytes is no digit, and always where numbers lie the other way
inline bool ReadEightDigits(const char *text, unsigned long long &number)
{
    if constexpr (std::endian::native != std::endian::little)
        return false;
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, text, sizeof bytes);
    constexpr std::uint64_t HighHalves = 0xF0F0F0F0F0F0F0F0, Zeros = 0x3030303030303030;
    constexpr std::uint64_t Sixes = 0x0606060606060606;  // of all bytes 3., only digits stay 3. with 6 more
    if ((bytes & HighHalves) != Zeros || ((bytes + Sixes) & HighHalves) != Zeros)
        return false;
    bytes -= Zeros;
    bytes = (bytes * (1 + (10 << 8))) >> 8 & 0x00FF00FF00FF00FF;
    bytes = (bytes * (1 + (100 << 16))) >> 16 & 0x0000FFFF0000FFFF;
    number = (bytes * (1 + (std::uint64_t{10000} << 32))) >> 32;
    return true;
}

}  // namespace tesk
