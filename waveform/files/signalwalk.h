// A walk over the changes of a whole signal, merged from those of its elements.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <queue>
#include <utility>
#include <vector>

#include "waveform/files/waveformfile.h"

namespace tesk {

/// What signals have in common if they share the events of all their elements.
std::vector<long long> IdentifyEvents(IWaveformFile &file, const SFileSignal &signal);

class CSignalWalk {
public:
    /// @param file  must outlive the walk
    CSignalWalk(IWaveformFile &file, const SFileSignal &signal);

    /// Goes to the next time at which an element has an event. @return false at the end
    bool Next();
    /// The time to which `Next` would go. @return false at the end
    bool Peek(long long &time) const;
    /// File ticks.
    long long GetTime() const { return m_time; }
    const CElementValues &GetValues() const { return m_values; }

private:
    // Neighbouring elements. Often many change at once: to look through them all is then quickest.
    struct SGroup {
        std::unique_ptr<IElementsWalk> walk;
        std::uint64_t changed = 0;  // which of them do at the group's next time
    };
    using CNextGroup = std::pair<long long, std::size_t>;  // time and place in m_groups

    void Push(std::size_t group);
    void Take(std::size_t group);

    CElementValues m_values;
    std::vector<SGroup> m_groups;
    std::priority_queue<CNextGroup, std::vector<CNextGroup>, std::greater<>> m_next;
    long long m_time = -1;
};

}  // namespace tesk
