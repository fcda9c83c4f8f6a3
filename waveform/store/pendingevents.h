// Events on their way into the runs of a store.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "platform/tarnutil.h"

namespace tesk {

/// Collects events as they come and hands them on in bundles, each for a few runs. A dump changes thousands of signals in
/// turn, and the end of each run lies in a cold corner of memory; so each corner is gone to once for many events.
class CPendingEvents {
public:
    static constexpr std::uint64_t MostRuns = UINT32_MAX;

    bool IsEmpty() const { return m_keys.empty(); }
    bool IsFull() const { return m_keys.size() >= Capacity; }

    /// @param run  below `MostRuns`
    void Add(std::uint64_t run, const WaveEvent &event)
    {
        const std::size_t slot = event.m_value % m_recent.size();
        if (m_recent[slot] >= m_events.size() || !IsSame(m_events[m_recent[slot]], event)) {
            m_recent[slot] = static_cast<std::uint32_t>(m_events.size());
            m_events.push_back(event);
        }
        m_keys.push_back(run << 32 | m_recent[slot]);
    }

    /// Calls `take(run, event)` for all events: neighbouring runs together, events of a run in the order in which they
    /// came.
    template <class TTake>
    void HandOut(TTake take)
    {
        BundleRuns();
        for (const std::uint64_t key : m_keys)
            take(key >> 32, m_events[static_cast<std::uint32_t>(key)]);
        m_keys.clear();
        m_events.clear();
    }

    /// Gives back the memory.
    void Release();

private:
    static constexpr std::size_t Capacity = std::size_t{1} << 19;

    static bool IsSame(const WaveEvent &left, const WaveEvent &right)
    {
        return left.m_time == right.m_time && left.m_value == right.m_value && left.m_unused == right.m_unused;
    }
    void BundleRuns();

    std::vector<WaveEvent> m_events;           // what many runs have at one time stands here once
    std::array<std::uint32_t, 16> m_recent{};  // the place of the last event with a value, by its low bits
    std::vector<std::uint64_t> m_keys;         // run, then place in m_events
    std::vector<std::uint64_t> m_bundled;
};

}  // namespace tesk
