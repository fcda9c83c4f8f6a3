// The events of one store, made from its chains of changes.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "platform/fst/fstblocks.h"
#include "platform/fst/fstchain.h"
#include "platform/tarn.h"

namespace NTARN {

/// The events of all elements of a store in one array.
struct SFstEvents {
    std::vector<SFileEvent> events;
    std::vector<std::uint32_t> begins;  ///< where those of each element begin, and where the last ones end
};

/// How the file's own times become those that are told.
struct SFstClock {
    long long timeZero = 0;
    long long divisor = 1;  ///< for a file whose ticks are shorter than a femtosecond

    long long Time(std::uint64_t time) const;
};

/// Makes the events of a store. It is fed twice with the same changes: first it counts the events, then it stores them,
/// so that their array has no more room than it needs.
class CFstEventMaker {
public:
    /// @param most  events, more are not made
    CFstEventMaker(const SFstStore &store, const SFstClock &clock, bool isBigEndian, std::uint64_t most);

    /// Begins a round.
    void AddInitial(const SFstInitial &initial);
    /// @throw XFstDamage behind the last change that can be read, XFstTooMuch if that makes too many events
    void AddChain(SFstSpan chain, const CFstTimes &times);
    /// Between the rounds.
    void EndCounting();
    SFstEvents Take();

private:
    void AddValue(long long time, const SFstValue &value);
    void AddLetters(long long time, const SFstValue &value);
    void AddBits(long long time, SFstSpan bits);
    void LeaveBits();
    void AddElement(std::size_t element, long long time, std::uint8_t value);
    void AddEvent(std::size_t element, long long time, std::uint64_t value);

    const SFstStore &m_store;
    SFstClock m_clock;
    bool m_isBigEndian;

    bool m_isCounting = true;
    std::size_t m_width;
    std::uint64_t m_most;
    std::uint64_t m_count = 0;             // of the events in this round
    std::vector<std::uint8_t> m_previous;  // of each element of a bus: its last value, unless it is in m_bits
    CFstBuffer m_bits;                     // the last value, if it was written as bits
    std::uint64_t m_lastTime = 0;
    SFstEvents m_made;  // `begins` counts the events of each element, then tells where its next one goes
};

}  // namespace NTARN
