#include "tools/signalwalk.h"

std::vector<long long> IdentifyEvents(IWaveFile &file, const SFileSignal &signal)
{
    std::vector<long long> events;
    for (long long i = 0; i < signal.elementCount; ++i)
        events.push_back(file.IdentifyEvents(signal.firstElement + i));
    return events;
}

CSignalWalk::CSignalWalk(IWaveFile &file, const SFileSignal &signal)
{
    for (long long i = 0; i < signal.elementCount; ++i) {
        m_elements.push_back({file.Walk(signal.firstElement + i)});
        m_values.emplace_back();
    }
    for (std::size_t i = 0; m_elements.size() > 1 && i < m_elements.size(); ++i)
        Fetch(i);
}

bool CSignalWalk::Next()
{
    if (m_elements.size() == 1)
        return NextOfOne();
    if (m_next.empty())
        return false;
    m_time = m_next.top().first;
    while (!m_next.empty() && m_next.top().first == m_time) {
        const std::size_t element = m_next.top().second;
        m_next.pop();
        m_values[element] = m_elements[element].nextValue;
        Fetch(element);
    }
    return true;
}

// Nothing is to be merged.
bool CSignalWalk::NextOfOne()
{
    SElement &element = m_elements.front();
    if (!element.walk->Next(m_time, element.nextValue))
        return false;
    m_values.front() = element.nextValue;
    return true;
}

void CSignalWalk::Fetch(std::size_t element)
{
    long long time = 0;
    if (m_elements[element].walk->Next(time, m_elements[element].nextValue))
        m_next.emplace(time, element);
}
