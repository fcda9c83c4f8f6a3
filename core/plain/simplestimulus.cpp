#include <string>

#include "core/basedliteral.h"
#include "core/stimulus.h"

CSimpleStimulus::CSimpleStimulus()
{
    m_time.m_value = 0;  // unlike a time on its own, which starts at -1
}

bool CSimpleStimulus::Init(const SimpleString::CStr &value, const STimeValue &time, int width, bool absolute,
                           bool binaryValues, bool rawValues)
{
    if (!binaryValues || rawValues || !ConvertBasedValue(value, 0, width, m_value, true))
        m_value = value;
    m_time = time;
    SetFlag(Absolute, absolute);
    return !m_value.IsEmpty() && m_time.m_ticks >= 0;
}

void CSimpleStimulus::GetValue(SimpleString::CStr &value) const
{
    value = m_value;
}

void CSimpleStimulus::SetValue(const SimpleString::CStr &value)
{
    m_value = value;
}

void CSimpleStimulus::GetBinary8BytesValue(long long &value) const
{
    value = m_binaryValue;
}

void CSimpleStimulus::SetBinary8BytesValue(long long value)
{
    m_binaryValue = value;
}

long long CSimpleStimulus::GetTime() const
{
    return m_time.m_ticks;
}

void CSimpleStimulus::GetTimeString(SimpleString::CStr &text) const
{
    text = TimeText().c_str();
}

std::string CSimpleStimulus::TimeText() const
{
    if ((m_flags & HasTime) == 0)
        return {};
    return (IsAbsolute() ? "@" : "") + tesk::DisplayTextUnsigned(m_time);
}

void CSimpleStimulus::SetFlag(unsigned flag, bool on)
{
    m_flags = on ? m_flags | flag : m_flags & ~flag;
}
