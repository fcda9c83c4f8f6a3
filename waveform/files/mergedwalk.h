// A walk over the changes of many signals, merged from one for each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <queue>
#include <span>
#include <utility>
#include <vector>

#include "waveform/files/signalwalk.h"

namespace tesk {

class CMergedWalk final : public IChangeWalk {
public:
    /// @param file     must outlive the walk
    /// @param signals  of the file
    CMergedWalk(IWaveformFile &file, const std::vector<SFileSignal> &signals);

    bool PeekTime(long long &time) override
    {
        time = m_next.empty() ? time : m_next.top().first;
        return !m_next.empty();
    }
    bool Next(long long &time, long long until) override;
    std::span<const std::uint32_t> GetChanged() const override { return m_changed; }
    const CElementValues &GetValues(std::size_t signal) override { return m_walks[signal].GetValues(); }
    std::span<const std::uint8_t> GetPositions(std::size_t signal) override;

private:
    using CNextChange = std::pair<long long, std::uint32_t>;  // time and signal

    void Queue(std::uint32_t signal);

    std::vector<CSignalWalk> m_walks;  // each stands at its last change
    std::vector<bool> m_hasPositions;
    std::priority_queue<CNextChange, std::vector<CNextChange>, std::greater<>> m_next;
    std::vector<std::uint32_t> m_changed;
    std::vector<std::uint8_t> m_positions;
};

}  // namespace tesk
