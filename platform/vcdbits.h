// The letters of a value in a VCD file as bits, 64 in a word. Internal.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/tarnutil.h"
#include "platform/vcdwords.h"

namespace NTARN::NImport {

inline constexpr std::uint32_t VcdWordBits = 64;

/// A word in which all elements have one position.
WaveWord MakeVcdWord(std::uint8_t position);

/// The bits of which an element differs, in any of its planes.
inline std::uint64_t ChangesBetween(const WaveWord &left, const WaveWord &right)
{
    std::uint64_t changes = 0;
    for (int i = 0; i < 4; ++i)
        changes |= left.m_planes[i] ^ right.m_planes[i];
    return changes;
}

class CVcdBits {
public:
    /// @return false if a letter is none of `positions`; then nothing is held
    bool Read(std::string_view letters, const CVcdLetters &positions);
    void Set(std::uint8_t position);

    std::size_t Count() const { return m_count; }
    /// Counted from the right, as the words are.
    std::uint8_t At(std::size_t bit) const
    {
        return PositionAt(m_words[bit / VcdWordBits], static_cast<unsigned>(bit % VcdWordBits));
    }
    /// A word of the lowest `count` bits; those to their left have the position `fill`.
    WaveWord Word(std::size_t index, std::size_t count, std::uint8_t fill) const;

private:
    std::vector<WaveWord> m_words;  // the rightmost first
    std::size_t m_count = 0;
};

}  // namespace NTARN::NImport
