// The letters of a value in a VCD file as bits, 64 in a word.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/tarnutil.h"
#include "platform/vcd/vcdwords.h"

namespace NTARN::NImport {

inline constexpr std::uint32_t VcdWordBits = 64;

/// A word in which all elements have one position.
inline WaveWord MakeVcdWord(std::uint8_t position)
{
    WaveWord word;
    for (unsigned i = 0; i < 4; ++i)
        word.m_planes[i] = 0 - static_cast<std::uint64_t>(position >> i & 1);
    return word;
}

/// What bits to the left of a value's first have (IEEE 1364-2005, 18.2.2).
inline std::uint8_t ExtendVcdBit(std::uint8_t first)
{
    constexpr std::uint8_t Zero = 2;
    constexpr std::uint8_t One = 3;
    return first == One ? Zero : first;
}

class CVcdBits {
public:
    /// @param letters  at least one
    /// @return false if a letter is none of `positions`
    bool Read(std::string_view letters, const CVcdLetters &positions);
    void Set(std::uint8_t position);

    std::size_t Count() const { return m_count; }
    /// Counted from the right, as the words are.
    std::uint8_t At(std::size_t bit) const
    {
        return PositionAt(m_words[bit / VcdWordBits], static_cast<unsigned>(bit % VcdWordBits));
    }
    /// The leftmost is extended to the left.
    const WaveWord &Word(std::size_t index) const { return m_words[index]; }

private:
    std::vector<WaveWord> m_words;  // the rightmost first
    std::size_t m_count = 0;
};

}  // namespace NTARN::NImport
