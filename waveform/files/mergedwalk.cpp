#include "waveform/files/mergedwalk.h"

#include <algorithm>

namespace tesk {

CMergedWalk::CMergedWalk(IWaveformFile &file, const std::vector<SFileSignal> &signals)
{
    m_walks.reserve(signals.size());
    for (const SFileSignal &signal : signals) {
        m_walks.emplace_back(file, signal);
        m_hasPositions.push_back(IsOfEnumeration(signal));
        Queue(static_cast<std::uint32_t>(m_walks.size() - 1));
    }
}

bool CMergedWalk::Next(long long &time, long long until)
{
    m_changed.clear();
    if (m_next.empty() || m_next.top().first > until)
        return false;
    time = m_next.top().first;
    while (!m_next.empty() && m_next.top().first == time) {
        m_changed.push_back(m_next.top().second);
        m_next.pop();
        m_walks[m_changed.back()].Next();
        Queue(m_changed.back());
    }
    return true;
}

void CMergedWalk::Queue(std::uint32_t signal)
{
    long long time = 0;
    if (m_walks[signal].Peek(time))
        m_next.emplace(time, signal);
}

std::span<const std::uint8_t> CMergedWalk::GetPositions(std::size_t signal)
{
    m_positions.clear();
    if (!m_hasPositions[signal])
        return {};
    for (const auto &value : m_walks[signal].GetValues())
        m_positions.push_back(
            static_cast<std::uint8_t>(std::min<std::uint64_t>(value.value_or(NoPosition), NoPosition)));
    return m_positions;
}

}  // namespace tesk
