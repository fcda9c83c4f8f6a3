#include "waveform/samplevalue.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include "core/basedliteral.h"
#include "waveform/realtext.h"
#include "waveform/textimporter.h"

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

// The common case of ConvertBasedValue in radix 2: of zeros and ones the low `width`, without leading zeros.
// @return empty for any other text
std::string_view PlainBits(std::string_view token, int width)
{
    unsigned others = 0;
    for (const char c : token)
        others |= static_cast<unsigned>(c ^ '0') & ~1U;
    if (others != 0 || width <= 0 || token.empty())
        return {};
    if (token.size() > static_cast<std::size_t>(width))
        token.remove_prefix(token.size() - static_cast<std::size_t>(width));
    return token.substr(std::min(token.find('1'), token.size() - 1));
}

// @return a copy of the value in binary; null for none
char *ConvertBits(std::string_view token, int width, int radix)
{
    const unsigned base = static_cast<unsigned>(std::abs(radix));
    const std::string_view plainBits = base == 2 ? PlainBits(token, width) : std::string_view();
    if (!plainBits.empty())
        return CopyText(plainBits);
    SimpleString::CStr bits;
    return ConvertBasedValue(std::string(token).c_str(), base, width, bits, false)
               ? CopyText(static_cast<const char *>(bits))
               : nullptr;
}

}  // namespace

void ConvertSample(SampleEvent &event, std::string_view token, const CSampleColumn &column, int width, int radix)
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
    ConvertSample(event, std::string_view(token), column, width, radix);
}
