#include "waveform/files/signalwalk.h"

#include <algorithm>
#include <bit>
#include <vector>

namespace tesk {

namespace {

constexpr std::size_t GroupSize = 64;

}  // namespace

std::vector<long long> IdentifyEvents(IWaveformFile &file, const SFileSignal &signal)
{
    std::vector<long long> events;
    events.reserve(static_cast<std::size_t>(signal.elementCount));
    for (long long i = 0; i < signal.elementCount; ++i)
        events.push_back(file.IdentifyEvents(signal.firstElement + i));
    return events;
}

CSignalWalk::CSignalWalk(IWaveformFile &file, const SFileSignal &signal)
    : m_values(static_cast<std::size_t>(signal.elementCount))
{
    const std::size_t count = m_values.size();
    m_groups.reserve((count + GroupSize - 1) / GroupSize);
    for (std::size_t i = 0; i < count; i += GroupSize) {
        const long long first = signal.firstElement + static_cast<long long>(i);
        m_groups.push_back({file.WalkTogether(first, std::min(GroupSize, count - i), count)});
        Push(m_groups.size() - 1);
    }
}

bool CSignalWalk::Peek(long long &time) const
{
    if (m_next.empty())
        return false;
    time = m_next.top().first;
    return true;
}

bool CSignalWalk::Next()
{
    if (!Peek(m_time))
        return false;
    while (!m_next.empty() && m_next.top().first == m_time) {
        const std::size_t group = m_next.top().second;
        m_next.pop();
        Take(group);
        Push(group);
    }
    return true;
}

// Queues a group by its next events.
void CSignalWalk::Push(std::size_t group)
{
    long long time = 0;
    if (m_groups[group].walk != nullptr && m_groups[group].walk->Next(time, m_groups[group].changed))
        m_next.emplace(time, group);
}

void CSignalWalk::Take(std::size_t group)
{
    const SGroup &taken = m_groups[group];
    for (std::uint64_t changed = taken.changed; changed != 0; changed &= changed - 1) {
        const auto element = static_cast<unsigned>(std::countr_zero(changed));
        m_values[group * GroupSize + element] = taken.walk->Value(element);
    }
}

}  // namespace tesk
