// Numbers of any length as 32-bit words, the least significant first: from digits, to bits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tesk {

using CWords = std::vector<std::uint32_t>;

inline constexpr std::size_t WordBits = 32;

/// Takes a prefix such as "16#" off the front of `text`; a text without '#' stays as it is, and so does `radix`.
/// @return false if what stands before the '#' is not a decimal number other than 0
bool TakeRadixPrefix(const char *&text, long long &radix);

/// Reads digits; upper and lower case are the same. No digits at all read as 0.
/// In radix 2, 8 and 16 the number of words follows from the number of digits, with room for at least one bit more; in
/// radix 10 there is no leading zero word but for the value 0.
/// @return false for another radix or another character; `words` is then empty
bool ReadDigits(std::string_view digits, long long radix, CWords &words);

/// As `ReadDigits` in radix 10, for decimal digits only. The time is well below quadratic in the number of digits.
CWords ReadDecimalDigits(std::string_view digits);

/// The bit at `index`; words above the last are zero.
inline bool TestBit(const CWords &words, std::size_t index)
{
    return index / WordBits < words.size() && (words[index / WordBits] >> (index % WordBits) & 1) != 0;
}

/// Number of bits up to the highest one that is set, 0 for the value 0.
std::size_t SignificantBits(const CWords &words);

/// `bits` without the leading zeros among the low `bits` bits; one of them stays.
std::size_t SkipLeadingZeros(const CWords &words, std::size_t bits);

/// Appends the low `bits` bits as "0" and "1", the highest first.
void AppendBits(std::string &text, const CWords &words, std::size_t bits, bool inverted);

}  // namespace tesk
