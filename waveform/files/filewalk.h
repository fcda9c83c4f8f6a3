// A walk over the changes of many signals of a file together.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <queue>
#include <utility>
#include <vector>

#include "waveform/files/signalwalk.h"

namespace tesk {

/// Goes from change to change by rising time, and at one time in the order in which the signals were given.
class CFileWalk {
public:
    /// @param file     must outlive the walk
    /// @param signals  of the file
    CFileWalk(IWaveformFile &file, const std::vector<SFileSignal> &signals);

    /// Goes to the next change of a signal. @return false at the end
    bool Next();
    /// The signal that changes, by its place among those given.
    std::size_t GetSignal() const { return m_signal; }
    /// File ticks.
    long long GetTime() const { return m_time; }
    /// The raw value of each of its elements now; none of one that has no event yet.
    const std::vector<std::optional<std::uint64_t>> &GetValues() const { return m_walks[m_signal].GetValues(); }

private:
    using CNextChange = std::pair<long long, std::size_t>;  // time and signal

    void Fetch(std::size_t signal);

    std::vector<CSignalWalk> m_walks;
    std::priority_queue<CNextChange, std::vector<CNextChange>, std::greater<>> m_next;
    std::size_t m_signal = 0;
    long long m_time = -1;
};

}  // namespace tesk
