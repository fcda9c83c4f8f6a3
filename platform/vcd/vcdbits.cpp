#include "platform/vcd/vcdbits.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace NTARN::NImport {

namespace {

constexpr std::size_t Group = 8;  // letters of 0 and 1 that are read at once

// The lowest bit of each letter, that of the first at the left. The product has each of them once in its upper byte, and
// nothing carries into it.
std::uint64_t GatherGroup(std::uint64_t group)
{
    constexpr bool isFirstLowest = std::endian::native == std::endian::little;
    return (group & 0x0101010101010101) * (isFirstLowest ? 0x8040201008040201 : 0x0102040810204080) >> 56;
}

// Reads up to 64 letters, and extends them to the left. @return false if one is not 0 or 1
bool ReadTwoState(std::string_view letters, WaveWord &word)
{
    constexpr std::uint64_t Zeros = 0x3030303030303030;
    constexpr std::uint64_t OtherBits = 0xFEFEFEFEFEFEFEFE;
    std::uint64_t bits = 0;
    std::uint64_t odd = 0;
    for (; letters.size() >= Group; letters.remove_prefix(Group)) {
        std::uint64_t group;
        std::memcpy(&group, letters.data(), sizeof group);
        odd |= (group ^ Zeros) & OtherBits;
        bits = bits << Group | GatherGroup(group);
    }
    for (const char letter : letters) {
        odd |= (static_cast<unsigned char>(letter) ^ Zeros) & 0xFE;
        bits = bits << 1 | (static_cast<unsigned char>(letter) & 1);
    }
    word = {{bits, ~std::uint64_t{0}, 0, 0}};
    return odd == 0;
}

void AppendBit(WaveWord &word, std::uint8_t position)
{
    for (unsigned i = 0; i < 4; ++i)
        word.m_planes[i] = word.m_planes[i] << 1 | (position >> i & 1);
}

// Reads up to 64 letters, and extends them to the left. @return all their positions, or-ed
std::uint8_t ReadLetters(std::string_view letters, const CVcdLetters &positions, WaveWord &word)
{
    std::uint8_t all = 0;
    word = MakeVcdWord(ExtendVcdBit(VcdPosition(letters.front(), positions)));
    for (const char letter : letters) {
        const std::uint8_t position = VcdPosition(letter, positions);
        all |= position;
        AppendBit(word, position);
    }
    return all;
}

}  // namespace

// All letters have 0 and 1 with the same meaning.
bool CVcdBits::Read(std::string_view letters, const CVcdLetters &positions)
{
    m_count = letters.size();
    const std::size_t words = (m_count + VcdWordBits - 1) / VcdWordBits;
    if (m_words.size() < words)
        m_words.resize(words);
    std::uint8_t all = 0;
    for (std::size_t i = 0; i < words; ++i) {
        const std::size_t count = std::min<std::size_t>(letters.size(), VcdWordBits);
        const std::string_view read = letters.substr(letters.size() - count);
        if (!ReadTwoState(read, m_words[i]))
            all |= ReadLetters(read, positions, m_words[i]);
        letters.remove_suffix(count);
    }
    return all != NoVcdLetter;
}

void CVcdBits::Set(std::uint8_t position)
{
    m_words.assign(1, MakeVcdWord(ExtendVcdBit(position)));
    AppendBit(m_words.front(), position);
    m_count = 1;
}

}  // namespace NTARN::NImport
