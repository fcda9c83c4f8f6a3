// The events of one scalar element in time order, in chunks that grow with the run. Internal.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/tarnutil.h"

/// Costs 16 bytes while it is empty. The first chunk holds one event and each later one a quarter of the events in front
/// of it, at least 3 and at most 1024: what is not used yet is never more than a fifth of a longer run. Events do not
/// move once they are stored.
class CEventRun {
public:
    static constexpr std::size_t NotShared = SIZE_MAX;

    CEventRun() = default;
    CEventRun(CEventRun &&other) noexcept : m_content(other.m_content), m_count(other.m_count) { other.m_count = 0; }
    CEventRun &operator=(CEventRun &&other) = delete;
    ~CEventRun();

    /// An event that is earlier than the one before it is stored with that one's time. A scan from the front for the
    /// first event later than some time stops at the same event either way; the binary search needs rising times.
    void Append(const WaveEvent &event);

    bool IsEmpty() const { return m_count == 0; }
    /// The last event not later than `time`; null if there is none.
    const WaveEvent *FindLast(long long time) const;
    /// The first event later than `time`; null if there is none.
    const WaveEvent *FindNext(long long time) const;

    /// Gives up the events. From now on the run only names another one, whose events count as its own.
    void ShareWith(std::size_t other);
    /// The run whose events count as this one's own, `NotShared` if it has its own. All operations above are for such a
    /// run alone.
    std::size_t SharedWith() const { return m_count == Shared ? m_content.other : NotShared; }

private:
    static constexpr std::size_t Shared = SIZE_MAX;

    WaveEvent *Chunk(std::size_t index) const;
    WaveEvent *AddChunk(std::size_t index);
    void GrowDirectory(std::size_t chunks);
    const WaveEvent &At(std::size_t index) const;
    std::size_t CountUpTo(long long time) const;
    void Clear();

    union {
        WaveEvent *single;   // the only chunk, of one event
        WaveEvent **chunks;  // from the second event on
        std::size_t other;   // of a shared run
    } m_content = {nullptr};
    std::size_t m_count = 0;
};
