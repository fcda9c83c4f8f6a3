#include "waveform/files/signalwalk.h"

#include <algorithm>
#include <vector>

namespace tesk {

namespace {

constexpr std::size_t GroupSize = 64;

}  // namespace

std::vector<long long> IdentifyEvents(IWaveformFile &file, const SFileSignal &signal)
{
    std::vector<long long> events;
    for (long long i = 0; i < signal.elementCount; ++i)
        events.push_back(file.IdentifyEvents(signal.firstElement + i));
    return events;
}

CSignalWalk::CSignalWalk(IWaveformFile &file, const SFileSignal &signal)
{
    for (std::size_t i = 0; i < static_cast<std::size_t>(signal.elementCount); ++i) {
        m_elements.push_back({file.Walk(signal.firstElement + static_cast<long long>(i))});
        m_values.emplace_back();
        if (i % GroupSize == 0)
            m_groups.emplace_back();
        if (SNextEvent event{0, i}; Fetch(event))
            m_groups.back().push_back(event);
    }
    for (std::size_t i = 0; i < m_groups.size(); ++i)
        Push(i);
}

bool CSignalWalk::Next()
{
    if (m_next.empty())
        return false;
    m_time = m_next.top().first;
    while (!m_next.empty() && m_next.top().first == m_time) {
        const std::size_t group = m_next.top().second;
        m_next.pop();
        Take(m_groups[group]);
        Push(group);
    }
    return true;
}

// Queues a group by its first event.
void CSignalWalk::Push(std::size_t group)
{
    const auto first = std::ranges::min_element(m_groups[group], {}, &SNextEvent::time);
    if (first != m_groups[group].end())
        m_next.emplace(first->time, group);
}

// Takes the events of now, and fetches those behind them.
void CSignalWalk::Take(CGroup &group)
{
    for (std::size_t i = 0; i < group.size();) {
        SNextEvent &event = group[i];
        const bool isNow = event.time == m_time;
        if (isNow)
            m_values[event.element] = m_elements[event.element].nextValue;
        if (!isNow || Fetch(event)) {
            ++i;
            continue;
        }
        event = group.back();
        group.pop_back();
    }
}

bool CSignalWalk::Fetch(SNextEvent &event)
{
    SElement &element = m_elements[event.element];
    return element.walk->Next(event.time, element.nextValue);
}

}  // namespace tesk
