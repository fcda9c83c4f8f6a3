#include "platform/vcdbits.h"

#include <algorithm>

namespace NTARN::NImport {

namespace {

constexpr std::size_t Group = 8;  // letters that are read at once if all are 0 or 1

std::uint64_t LoadGroup(const char *letters)
{
    std::uint64_t group = 0;
    for (unsigned i = 0; i < Group; ++i)
        group |= static_cast<std::uint64_t>(static_cast<unsigned char>(letters[i])) << 8 * i;
    return group;
}

bool IsTwoState(std::uint64_t group)
{
    return (group & 0xFEFEFEFEFEFEFEFE) == 0x3030303030303030;
}

// The lowest bit of each letter, that of the first at the left. No two products meet in one bit.
std::uint64_t GatherGroup(std::uint64_t group)
{
    return (group & 0x0101010101010101) * 0x8040201008040201 >> 56;
}

void Shift(WaveWord &word, unsigned bits)
{
    for (std::uint64_t &plane : word.m_planes)
        plane <<= bits;
}

// Reads up to 64 letters. @return all their positions, or-ed
std::uint8_t ReadWord(std::string_view letters, const CVcdLetters &positions, WaveWord &word)
{
    std::uint8_t all = 0;
    word = {};
    while (!letters.empty()) {
        const std::uint64_t group = letters.size() >= Group ? LoadGroup(letters.data()) : 0;
        if (IsTwoState(group)) {
            Shift(word, Group);
            word.m_planes[0] |= GatherGroup(group);
            word.m_planes[1] |= 0xFF;
            letters.remove_prefix(Group);
            continue;
        }
        const std::uint8_t position = VcdPosition(letters.front(), positions);
        all |= position;
        Shift(word, 1);
        for (unsigned i = 0; i < 4; ++i)
            word.m_planes[i] |= static_cast<std::uint64_t>(position >> i & 1);
        letters.remove_prefix(1);
    }
    return all;
}

}  // namespace

WaveWord MakeVcdWord(std::uint8_t position)
{
    WaveWord word;
    for (unsigned i = 0; i < 4; ++i)
        word.m_planes[i] = (position >> i & 1) != 0 ? ~std::uint64_t{0} : 0;
    return word;
}

bool CVcdBits::Read(std::string_view letters, const CVcdLetters &positions)
{
    m_count = letters.size();
    const std::size_t words = (m_count + VcdWordBits - 1) / VcdWordBits;
    if (m_words.size() < words)
        m_words.resize(words);
    std::uint8_t all = 0;
    for (std::size_t i = 0; i < words; ++i) {
        const std::size_t count = std::min<std::size_t>(letters.size(), VcdWordBits);
        all |= ReadWord(letters.substr(letters.size() - count), positions, m_words[i]);
        letters.remove_suffix(count);
    }
    return all != NoVcdLetter;
}

void CVcdBits::Set(std::uint8_t position)
{
    m_words.assign(1, MakeVcdWord(position));
    m_count = 1;
}

WaveWord CVcdBits::Word(std::size_t index, std::size_t count, std::uint8_t fill) const
{
    WaveWord word = m_words[index];
    const std::size_t bits = count - index * VcdWordBits;
    if (bits >= VcdWordBits)
        return word;
    const WaveWord filled = MakeVcdWord(fill);
    const std::uint64_t mask = ~std::uint64_t{0} << bits;
    for (int i = 0; i < 4; ++i)
        word.m_planes[i] = (word.m_planes[i] & ~mask) | (filled.m_planes[i] & mask);
    return word;
}

}  // namespace NTARN::NImport
