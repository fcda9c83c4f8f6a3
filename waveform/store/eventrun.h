// The events of one scalar element in time order, packed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

#include "platform/tarnutil.h"

namespace tesk {

struct SEventPlace;

/// Costs 16 bytes while it is empty; an event of an enumeration then takes one to four bytes for most files.
///
/// The events lie in blocks of one size, which are searched by halving; each begins with the time of its first event.
/// An event is the time since the one before and the position of its value, or behind that the value as a whole.
class CEventRun {
public:
    static constexpr std::size_t NotShared = UINT32_MAX;
    static constexpr std::uint32_t NoWord = UINT32_MAX;

    CEventRun() = default;
    CEventRun(CEventRun &&other) noexcept
        : m_events(std::exchange(other.m_events, nullptr)), m_sharedWith(other.m_sharedWith), m_word(other.m_word)
    {}
    CEventRun &operator=(CEventRun &&other) = delete;
    ~CEventRun();

    /// An event that is earlier than the one before it is stored with that one's time. A scan from the front for the
    /// first event later than some time stops at the same event either way; halving needs times that do not fall.
    void Append(const WaveEvent &event);

    bool IsEmpty() const { return m_events == nullptr; }
    /// Finds the last event not later than `time`.
    bool FindLast(long long time, WaveEvent &event) const;
    /// Finds the first event later than `time`.
    bool FindNext(long long time, WaveEvent &event) const;
    /// Copies the events behind `place`, as many as there is room for, and moves it behind them.
    /// @return how many
    std::size_t Read(SEventPlace &place, std::span<WaveEvent> events) const;

    /// Gives up the events. From now on the run only names another one, whose events count as its own.
    void ShareWith(std::size_t other);
    /// The run whose events count as this one's own, `NotShared` if it has its own. All operations above are for such a
    /// run alone.
    std::size_t SharedWith() const { return m_sharedWith; }

    /// The number of the word in which more events of the element may wait, `NoWord` for none; of use to the owner alone.
    std::uint32_t Word() const { return m_word; }
    void SetWord(std::uint32_t word) { m_word = word; }

private:
    struct SEvents;

    void Reserve(std::size_t size);
    std::size_t CountBlocksUpTo(long long time) const;

    SEvents *m_events = nullptr;
    std::uint32_t m_sharedWith = NotShared;
    std::uint32_t m_word = NoWord;
};

}  // namespace tesk
