#include "platform/ghw/ghwstrings.h"

#include <algorithm>

namespace NTARN {
namespace {

// Behind each string stands how much of it the next one begins with: in the low five bits of bytes that are no letters
// of Latin-1. All but the last of these bytes have the highest bit set.
constexpr std::uint8_t PrefixBits = 5;
constexpr std::uint8_t PrefixMask = (1 << PrefixBits) - 1;
constexpr unsigned MostPrefixBits = 30;

bool IsPrefixByte(std::uint8_t byte)
{
    return (byte & 0x7FU) <= PrefixMask;
}

std::size_t TakePrefixSize(CGhwBytes &bytes, std::uint8_t byte)
{
    std::size_t size = byte & PrefixMask;
    for (unsigned bits = PrefixBits; (byte & 0x80) != 0; bits += PrefixBits) {
        byte = bytes.Byte();
        if (!IsPrefixByte(byte) || bits >= MostPrefixBits)
            throw XGhwDamage();
        size |= std::size_t{byte & 0x1FU} << bits;
    }
    return size;
}

void AppendUtf8(std::string &text, std::string_view latin1)
{
    for (const char c : latin1) {
        const auto letter = static_cast<std::uint8_t>(c);
        if (letter < 0x80) {
            text += c;
            continue;
        }
        text += static_cast<char>(0xC0 | letter >> 6);
        text += static_cast<char>(0x80 | (letter & 0x3F));
    }
}

}  // namespace

CGhwStrings::CGhwStrings(CGhwBytes &bytes, CGhwBudget &budget)
{
    ExpectGhwZeros(bytes);
    const std::uint32_t count = bytes.Word();
    if (count > bytes.Left())
        throw XGhwDamage();
    bytes.Word();  // letters altogether
    m_ends.reserve(std::size_t{count} + 1);
    std::string latin1;
    std::size_t prefix = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        latin1.resize(std::min(prefix, latin1.size()));
        std::uint8_t byte = bytes.Byte();
        for (; !IsPrefixByte(byte); byte = bytes.Byte())
            latin1 += static_cast<char>(byte);
        prefix = TakePrefixSize(bytes, byte);
        budget.Charge(latin1.size());
        AppendUtf8(m_text, latin1);
        m_ends.push_back(m_text.size());
    }
    ExpectGhwTag(bytes, GhwTag("EOS"));
}

std::string_view CGhwStrings::Text(std::uint32_t number) const
{
    if (number >= m_ends.size())
        throw XGhwDamage();
    if (number == 0)
        return {};
    const std::size_t begin = m_ends[number - 1];
    return std::string_view(m_text).substr(begin, m_ends[number] - begin);
}

}  // namespace NTARN
