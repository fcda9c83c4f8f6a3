#include "waveform/table/samplevalue.h"

#include <cstdlib>
#include <cstring>
#include <string>

#include "core/basedliteral.h"
#include "waveform/table/realtext.h"
#include "waveform/textimporter.h"

using namespace tesk;

namespace {

char *CopyText(std::string_view text)
{
    char *copy = static_cast<char *>(std::malloc(text.size() + 1));
    if (copy == nullptr)
        return nullptr;
    std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = 0;
    return copy;
}

// Whether a text is a number in binary, which it is in the common case.
bool IsPlainBits(std::string_view token)
{
    unsigned others = 0;
    for (const char c : token)
        others |= static_cast<unsigned>(c ^ '0') & ~1U;
    return others == 0 && !token.empty();
}

// Works as ConvertBasedValue with plain bits: of them the low `width`, without leading zeros. There is no branch on a
// bit, because a wrong guess of the processor takes longer than all the rest.
char *CopyPlainBits(std::string_view bits, std::size_t width)
{
    if (bits.size() > width)
        bits.remove_prefix(bits.size() - width);
    char *copy = static_cast<char *>(std::malloc(bits.size() + 1));
    if (copy == nullptr)
        return nullptr;
    char *end = copy;
    std::size_t isBehindZeros = 0;
    for (const char bit : bits) {
        *end = bit;
        isBehindZeros |= static_cast<std::size_t>(bit & 1);
        end += isBehindZeros;
    }
    end[1 - isBehindZeros] = 0;  // the last one of nothing but zeros stays
    return copy;
}

// @return a copy of the value in binary; null for none
char *ConvertBits(std::string_view token, int width, int radix)
{
    const unsigned base = static_cast<unsigned>(std::abs(radix));
    if (base == 2 && width > 0 && IsPlainBits(token))
        return CopyPlainBits(token, static_cast<std::size_t>(width));
    SimpleString::CStr bits;
    return ConvertBasedValue(std::string(token).c_str(), base, width, bits, false)
               ? CopyText(static_cast<const char *>(bits))
               : nullptr;
}

}  // namespace

void tesk::ConvertSample(SampleEvent &event, std::string_view token, const CSampleColumn &column, int width, int radix)
{
    if (column.m_isReal) {
        event.m_real = 0;
        ReadReal(token, event.m_real);
        return;
    }
    event.m_text = nullptr;
    if (radix > 0 && token.starts_with('-'))
        return;
    event.m_text = column.m_isInteger ? CopyText(token) : ConvertBits(token, width, radix);
}

void ConvertSample(SampleEvent &event, const char *token, const CSampleColumn &column, int width, int radix)
{
    tesk::ConvertSample(event, std::string_view(token), column, width, radix);
}
