#include "waveform/files/filewalk.h"

#include <tuple>

namespace tesk {

CFileWalk::CFileWalk(IWaveformFile &file, const std::vector<SFileSignal> &signals)
{
    m_walks.reserve(signals.size());
    for (const SFileSignal &signal : signals) {
        m_walks.emplace_back(file, signal);
        Fetch(m_walks.size() - 1);
    }
}

// The last signal met goes on only now: its values were those of its change until then.
bool CFileWalk::Next()
{
    if (m_time >= 0)
        Fetch(m_signal);
    if (m_next.empty())
        return false;
    std::tie(m_time, m_signal) = m_next.top();
    m_next.pop();
    return true;
}

void CFileWalk::Fetch(std::size_t signal)
{
    if (m_walks[signal].Next())
        m_next.emplace(m_walks[signal].GetTime(), signal);
}

}  // namespace tesk
