// The value changes of one store in one block, and the letters that values are written with.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "platform/fst/fsthierarchy.h"

namespace NTARN {

/// The position of a value letter in "UX01ZWLH-", in either case; '?' is '-', and any other letter X.
std::uint8_t FstValue(std::uint8_t letter);
/// The same for a letter that describes the state of a port.
std::uint8_t FstPortValue(std::uint8_t letter);
/// The bits of a real. @param bytes  8 of them
std::uint64_t FstReal(SFstSpan bytes, bool isBigEndian);

/// One value: letters, or bits packed into bytes, the left one highest.
struct SFstValue {
    SFstSpan bytes;
    bool isPacked;
};

/// Takes the changes of a store off the front of what its chain holds. @throw XFstDamage
class CFstChain {
public:
    CFstChain(SFstSpan bytes, const SFstStore &store) : m_rest(bytes), m_store(store) {}

    bool AtEnd() const { return m_rest.AtEnd(); }
    /// @param timeIndex  receives the index of the change's time in the times of the block
    SFstValue Next(std::uint64_t &timeIndex)
    {
        const SFstValue value = m_store.size == 1 && m_store.kind == SFstStore::EKind::Bits ? NextBit() : NextVector();
        timeIndex = m_timeIndex;
        return value;
    }

private:
    SFstValue NextBit();
    SFstValue NextVector();
    SFstValue TakePacked();
    void Advance(std::uint64_t times);

    CFstBytes m_rest;
    const SFstStore &m_store;
    std::uint64_t m_timeIndex = 0;
    std::uint8_t m_letters[8] = {};  // of a real that is packed as if it were letters
};

}  // namespace NTARN
