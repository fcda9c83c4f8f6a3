#include "settings/longnumber.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "settings/number/bitwords.h"

namespace {

// Adds one to binary digits; a carry out of the first is lost.
void Increment(std::string &bits)
{
    for (auto bit = bits.rbegin(); bit != bits.rend(); ++bit) {
        const bool carry = *bit == '1';
        *bit = carry ? '0' : '1';
        if (!carry)
            return;
    }
}

}  // namespace

CLongNumber::CLongNumber(const char *text, unsigned radix)
{
    if (text == nullptr)
        return;
    m_negative = *text == '-';
    if (m_negative)
        ++text;
    if (*text == 0)
        return;
    long long usedRadix = radix;
    if (tesk::TakeRadixPrefix(text, usedRadix))
        tesk::ReadDigits(text, usedRadix, m_words);
}

unsigned CLongNumber::BitLength() const
{
    return IsNumber() ? static_cast<unsigned>(MagnitudeBits() + (m_negative ? 1 : 0)) : 0;
}

bool CLongNumber::ToBinaryText(char *buffer, int digits, bool pad) const
{
    std::string text;
    const bool fits = ToBinaryText(text, digits, pad);
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    return fits;
}

bool CLongNumber::ToBinaryText(std::string &text, int digits, bool pad) const
{
    if (!IsNumber()) {
        text.assign(1, '0');
        return true;
    }
    const std::size_t room = static_cast<std::size_t>(std::max(digits, 0));
    const std::size_t needed = MagnitudeBits();
    std::size_t bits = std::min(needed, room);
    text.clear();
    if (pad || m_negative)
        text.assign(room - bits, m_negative ? '1' : '0');
    else
        bits = tesk::SkipLeadingZeros(m_words, bits);
    tesk::AppendBits(text, m_words, bits, m_negative);
    if (m_negative)
        Increment(text);
    return digits >= 0 && needed <= room;
}

// The value 0 has one bit, but not with a sign.
std::size_t CLongNumber::MagnitudeBits() const
{
    const std::size_t below = (m_words.size() - 1) * tesk::WordBits;
    const std::size_t bits = below + static_cast<std::size_t>(std::bit_width(m_words.back()));
    return bits == 0 && !m_negative ? 1 : bits;
}
