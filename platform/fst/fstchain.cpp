#include "platform/fst/fstchain.h"

#include <array>

#include "base/bytes.h"
#include "base/stdlogic.h"
#include "platform/types/stateletters.h"

namespace NTARN {
namespace {

constexpr std::uint8_t X = 1;

constexpr CStatePositions ValueTable = PositionsOf(ValueStates, X);
constexpr CStatePositions PortTable = PositionsOf(PortStates, X);

// The letters of a single bit that is neither 0 nor 1.
constexpr std::string_view ExtraLetters = "xzhuwl-?";
constexpr std::string_view BitLetters = "01";

SFstValue Letter(std::string_view letters, std::uint64_t index)
{
    return {{reinterpret_cast<const std::uint8_t *>(&letters[index]), 1}, false};
}

}  // namespace

std::uint8_t FstValue(std::uint8_t letter)
{
    return ValueTable[letter];
}

std::uint8_t FstPortValue(std::uint8_t letter)
{
    return PortTable[letter];
}

std::uint64_t FstReal(SFstSpan bytes, bool isBigEndian)
{
    return isBigEndian ? tesk::LoadBigEndian(bytes.data(), 8) : tesk::LoadLittleEndian(bytes.data(), 8);
}

// Bit 0 tells whether bit 1 is the value, or bits 1 to 3 choose the letter; the times to step stand above.
SFstValue CFstChain::NextBit()
{
    const std::uint64_t change = m_rest.Varint();
    const bool isExtra = (change & 1) != 0;
    Advance(change >> (isExtra ? 4 : 2));
    return isExtra ? Letter(ExtraLetters, change >> 1 & 7) : Letter(BitLetters, change >> 1 & 1);
}

// Bit 0 tells that letters follow; the times to step stand above.
SFstValue CFstChain::NextVector()
{
    const std::uint64_t change = m_rest.Varint();
    Advance(change >> 1);
    if ((change & 1) != 0)
        return {m_rest.Take(m_store.size), false};
    return TakePacked();
}

SFstValue CFstChain::TakePacked()
{
    const SFstSpan packed = m_rest.Take((std::uint64_t{m_store.size} + 7) / 8);
    if (m_store.kind == SFstStore::EKind::Bits)
        return {packed, true};
    if (m_store.kind == SFstStore::EKind::Port)
        throw XFstDamage();  // its letters are never all 0 and 1: two of them are blanks
    // The bytes of a real may by chance all be the letters 0 and 1; the writer takes them for bits.
    for (unsigned i = 0; i < 8; ++i)
        m_letters[i] = static_cast<std::uint8_t>('0' + (packed[0] >> (7 - i) & 1));
    return {m_letters, false};
}

void CFstChain::Advance(std::uint64_t times)
{
    if (m_timeIndex + times < m_timeIndex)
        throw XFstDamage();
    m_timeIndex += times;
}

}  // namespace NTARN
