// The value changes of a GHW file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "platform/ghw/ghwhierarchy.h"
#include "platform/tarn.h"

namespace NTARN {

/// The file has the changes of all elements time by time. One pass looks how far it can be read, and how much each
/// element has; a second one, when events are first asked for, packs the changes of each element in a run of their own,
/// where they take about as much as in the file. The runs are unpacked as they are asked for.
class CGhwChanges {
public:
    enum class EState { Whole, Cut, Damaged };

    /// @param bytes   stand behind the hierarchy; this and the rest must outlive the object
    /// @param values  of each element
    CGhwChanges(CGhwBytes &bytes, const std::vector<EGhwValue> &values);

    /// How the first pass ended. The changes of the last time that is read are there as a whole.
    EState State() const { return m_state; }
    /// The last time, 0 if there is none.
    long long End() const { return m_times.empty() ? 0 : m_times.back(); }
    /// The events of one element, at the same place for the life of the object. None of an element of which they no
    /// longer can be read.
    const std::vector<SFileEvent> &Events(std::uint32_t element);
    /// Whether events could not be read although the first pass had seen them.
    bool HasLost() const { return m_hasLost; }

private:
    class CSizes;
    class CPacker;

    void Pack();
    std::vector<SFileEvent> Unpack(std::uint32_t element) const;

    CGhwBytes &m_bytes;
    const std::vector<EGhwValue> &m_values;
    std::uint64_t m_begin;
    EState m_state = EState::Whole;
    std::uint64_t m_listCount = 0;        // lists of changes at one time
    std::vector<long long> m_times;       // rising
    std::vector<std::uint64_t> m_runs;    // of each element where its run begins, and where the last one ends
    std::vector<std::uint32_t> m_counts;  // of each element its events
    bool m_isPacked = false;
    bool m_hasLost = false;
    std::vector<std::uint8_t> m_packed;
    std::unordered_map<std::uint32_t, std::vector<SFileEvent>> m_events;
};

}  // namespace NTARN
