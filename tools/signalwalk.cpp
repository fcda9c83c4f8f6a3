#include "tools/signalwalk.h"

CSignalWalk::CSignalWalk(IWaveFile &file, const SFileSignal &signal)
{
    for (long long i = 0; i < signal.elementCount; ++i) {
        m_elements.push_back({file.Walk(signal.firstElement + i)});
        m_values.emplace_back();
        Fetch(m_elements.size() - 1);
    }
}

bool CSignalWalk::Next()
{
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

void CSignalWalk::Fetch(std::size_t element)
{
    long long time = 0;
    if (m_elements[element].walk->Next(time, m_elements[element].nextValue))
        m_next.emplace(time, element);
}
