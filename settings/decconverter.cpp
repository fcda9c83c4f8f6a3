#include "settings/decconverter.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string>
#include <string_view>

#include "base/wrap.h"
#include "platform/crt.h"

namespace {

constexpr int ValueBits = 64;

// The digits of a radix that is a power of two; null for others.
const char *DigitSet(int radix)
{
    switch (radix) {
    case 2: return "01";
    case 8: return "01234567";
    case 16: return "0123456789ABCDEF";
    default: return nullptr;
    }
}

SimpleString::CStr TrimmedUpperCase(const char *text)
{
    std::string upper = text;
    for (char &c : upper)
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    SimpleString::CStr trimmed = upper.c_str();
    trimmed.TrimLeft();
    trimmed.TrimRight();
    return trimmed;
}

// No character is refused: what is no digit counts as its distance from one.
int UncheckedDigit(char digit)
{
    return digit <= '9' ? digit - '0' : digit - '7';  // 'A' is 10
}

// Binary digits, the highest first; none for 0.
std::string BinaryDigits(unsigned long long value)
{
    std::string digits;
    for (; value != 0; value >>= 1)
        digits += (value & 1) != 0 ? '1' : '0';
    std::ranges::reverse(digits);
    return digits;
}

}  // namespace

bool TKc_decConverter::Convert(const char *text, int radix)
{
    m_magnitude = 0;
    m_negative = false;
    if (text == nullptr || *text == 0)
        return false;
    SimpleString::CStr digits = TrimmedUpperCase(text);
    if (digits.IsEmpty())
        return false;
    m_digits = DigitSet(radix);
    if (radix == 10) {
        const long long value = _atoi64(digits);
        m_negative = value < 0;
        m_magnitude = static_cast<unsigned long long>(m_negative ? tesk::WrapSubtract(0, value) : value);
        return true;
    }
    const char *first = digits + (*digits == '-' ? 1 : 0);
    return m_digits != nullptr && first[std::strspn(first, m_digits)] == 0 && convert(digits, radix);
}

bool TKc_decConverter::Convert(const char *text)
{
    if (text == nullptr || *text == 0)
        return false;
    const SimpleString::CStr trimmed = TrimmedUpperCase(text);
    const char *mark = std::strchr(trimmed, '#');
    return mark != nullptr && Convert(mark + 1, tesk::ReadInt(trimmed));
}

bool TKc_decConverter::convert(SimpleString::CStr &text, int radix)
{
    const unsigned power = std::bit_ceil(static_cast<unsigned>(std::max(radix, 2)));
    const int bits = std::countr_zero(power);
    if (*text == '-') {
        m_negative = true;
        text = text.Mid(1);
    }
    if (power != static_cast<unsigned>(radix) || text.IsEmpty())
        return false;
    const std::string_view digits(text, static_cast<std::size_t>(text.GetLength()));
    const auto used = std::min(digits.size(), static_cast<std::size_t>(ValueBits / bits));
    for (const char digit : digits.substr(digits.size() - used))
        m_magnitude = m_magnitude << bits | static_cast<unsigned>(UncheckedDigit(digit));
    return true;
}

long long TKc_decConverter::GetValue() const
{
    return static_cast<long long>(m_negative ? 0 - m_magnitude : m_magnitude);
}

bool TKc_decConverter::MakeBin(int width, SimpleString::CStr &text) const
{
    std::string digits = BinaryDigits(m_negative ? 0 - m_magnitude : m_magnitude);
    bool fits = true;
    if (width != -1) {
        const std::size_t room = static_cast<std::size_t>(std::max(width, 0));
        if (digits.size() > room || width < 0) {
            digits.erase(0, digits.size() - room);
            fits = static_cast<int>(std::bit_width(m_magnitude)) <= width;
        } else {
            digits.insert(0, room - digits.size(), '0');
        }
    }
    text = digits.c_str();
    return fits;
}
