#include "core/stimiterator.h"

/// The event that a walk by time hands out, over and over.
class CCustomEventCursor final : public CSimpleStimulus {
public:
    explicit CCustomEventCursor(const IStimulus *stimulus) : m_stimulus(const_cast<IStimulus *>(stimulus)) { Reset(); }

    void Reset()
    {
        m_current = STimeValue();
        m_current.m_ticks = -1;
    }

    bool MoveNext()
    {
        const long long next = m_stimulus->GetNextEventTime(m_current.GetInDisplayUnit());
        // Deliberate: the unit is "fs" and the resolution 1000 whatever the simulator's is; only the count matters.
        m_current.SetFromValue(static_cast<double>(next), 0, 0, 1000);
        if (m_current.GetInDisplayUnit() == -1)
            return false;
        m_stimulus->GetValue(m_current.GetInDisplayUnit(), m_value);
        m_time = m_current;
        SetFlag(Absolute, true);
        return true;
    }

private:
    IStimulus *m_stimulus;  // not owned
    STimeValue m_current;
};

CStimIterator::CStimIterator(const IStimulus *stimulus) : m_stimulus(stimulus)
{
    if (stimulus != nullptr && stimulus->IsCustom())
        m_cursor = new CCustomEventCursor(stimulus);
}

CStimIterator::~CStimIterator()
{
    delete m_cursor;
}

CStimIterator &CStimIterator::operator=(const CStimIterator &other) = default;

ISimpleStimulus *CStimIterator::Next()
{
    if (m_cursor != nullptr)
        return m_cursor->MoveNext() ? m_cursor : nullptr;
    const CStimulus *stimulus = dynamic_cast<const CStimulus *>(m_stimulus);
    if (stimulus == nullptr || m_position >= stimulus->m_events.size())
        return nullptr;
    return stimulus->m_events[m_position++].get();
}

void CStimIterator::Reset()
{
    m_position = 0;
    if (m_cursor != nullptr)
        m_cursor->Reset();
}
