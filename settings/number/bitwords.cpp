#include "settings/number/bitwords.h"

#include <bit>
#include <cstdlib>
#include <cstring>

#include "base/ascii.h"

namespace tesk {

namespace {

bool AreDigits(std::string_view digits, long long radix)
{
    for (const char c : digits) {
        if (DigitValue(c) >= radix)
            return false;
    }
    return true;
}

// Bits per digit of a radix that is a power of two; 0 for a radix that is not known.
unsigned DigitBits(long long radix)
{
    switch (radix) {
    case 2: return 1;
    case 8: return 3;
    case 16: return 4;
    default: return 0;
    }
}

// Packs the digits from the last one to the first. A word that is just full is followed by one more, a zero.
CWords PackDigits(std::string_view digits, unsigned bits)
{
    CWords words;
    words.reserve(digits.size() * bits / WordBits + 1);
    std::uint64_t pending = 0;
    std::size_t count = 0;
    for (std::size_t i = digits.size(); i-- > 0;) {
        pending |= static_cast<std::uint64_t>(DigitValue(digits[i])) << count;
        count += bits;
        if (count < WordBits)
            continue;
        words.push_back(static_cast<std::uint32_t>(pending));
        pending >>= WordBits;
        count -= WordBits;
    }
    words.push_back(static_cast<std::uint32_t>(pending));
    return words;
}

}  // namespace

bool TakeRadixPrefix(const char *&text, long long &radix)
{
    const char *mark = std::strchr(text, '#');
    if (mark == nullptr)
        return true;
    char *end = nullptr;
    radix = std::strtoll(text, &end, 10);
    text = mark + 1;
    return end == mark && radix != 0;
}

bool ReadDigits(std::string_view digits, long long radix, CWords &words)
{
    words.clear();
    const unsigned bits = DigitBits(radix);
    if ((bits == 0 && radix != 10) || !AreDigits(digits, radix))
        return false;
    words = bits != 0 ? PackDigits(digits, bits) : ReadDecimalDigits(digits);
    return true;
}

std::size_t SignificantBits(const CWords &words)
{
    std::size_t count = words.size();
    while (count > 0 && words[count - 1] == 0)
        --count;
    return count == 0 ? 0 : (count - 1) * WordBits + static_cast<std::size_t>(std::bit_width(words[count - 1]));
}

std::size_t SkipLeadingZeros(const CWords &words, std::size_t bits)
{
    while (bits > 1 && !TestBit(words, bits - 1))
        --bits;
    return bits;
}

void AppendBits(std::string &text, const CWords &words, std::size_t bits, bool inverted)
{
    text.reserve(text.size() + bits);
    while (bits > 0)
        text += TestBit(words, --bits) != inverted ? '1' : '0';
}

}  // namespace tesk
