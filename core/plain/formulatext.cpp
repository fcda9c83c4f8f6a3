// CStimulus: its text forms and the check of its settings.
#include <algorithm>
#include <cstdint>
#include <string>

#include "base/wrap.h"
#include "core/stimulus.h"
#include "settings/text/views.h"

using tesk::WrapAdd;
using tesk::WrapMultiply;
using tesk::WrapSubtract;

namespace {

// The coarsest unit, from `coarsest` down, in which a count of femtoseconds is whole.
int WholeUnit(long long femtoseconds, int coarsest)
{
    int unit = coarsest;
    while (unit > 0 && femtoseconds % tesk::ChangeTime2(1, static_cast<unsigned>(unit), 0) != 0)
        --unit;
    return unit;
}

// Trailing white space goes, then one trailing comma.
void TrimEnd(std::string &text)
{
    text.erase(text.find_last_not_of(" \t\n\v\f\r") + 1);
    if (text.ends_with(','))
        text.pop_back();
}

}  // namespace

// Deliberate: the offset is added to the event itself, for an absolute event too, and stays in it.
void CStimulus::AppendEventText(CSimpleStimulus &event, std::string &text)
{
    STimeValue &time = event.m_time;
    const int saved = time.m_displayUnit;
    time.SetFromTicks(WrapAdd(time.m_ticks, m_offset.m_ticks), g_simRes);
    time.m_displayUnit = static_cast<std::uint16_t>(WholeUnit(time.m_value, saved));

    text.append(event.m_value, static_cast<std::size_t>(event.m_value.GetLength()));
    if (event.HasWrittenTime())
        text += ' ' + event.TimeText();
}

void CStimulus::GetFormula(SimpleString::CStr &formula)
{
    std::string text;
    for (const auto &event : m_events) {
        if (event != m_events.front())
            text += ", ";
        AppendEventText(*event, text);
    }
    BuildIndex();
    TrimEnd(text);
    if (m_repeat.m_ticks != 0)
        text += " -r " + tesk::DisplayText(m_repeat);
    SimpleString::CStr cancel;
    if (GetCancelString(cancel)) {
        text += " -cancel ";
        text += cancel;
    }
    formula = tesk::ToCStr(text);
}

void CStimulus::GetTimeString(long long time, SimpleString::CStr &text) const
{
    std::size_t first = m_events.size();
    for (const CTimeIndex *index : {&m_absoluteIndex, &m_relativeIndex}) {
        const SIndexEntry *entry = FindNearest(*index, time, EDirection::Forward);
        if (entry != nullptr && entry->time == time)
            first = std::min(first, entry->event);
    }
    if (first < m_events.size())
        m_events[first]->GetTimeString(text);
}

bool CStimulus::GetRepeatString(SimpleString::CStr &text) const
{
    if (m_repeat.m_ticks != 0)
        return false;
    text = tesk::DisplayTextUnsigned(m_repeat).c_str();
    return true;
}

bool CStimulus::GetCancelString(SimpleString::CStr &text) const
{
    if (m_cancel.m_ticks == 0)
        return false;
    if ((m_flags & CancelAbsolute) != 0) {
        text = ("@" + tesk::DisplayTextUnsigned(m_cancel)).c_str();
        return true;
    }
    STimeValue sinceStart;
    sinceStart.SetFromTicks(WrapSubtract(m_cancel.m_ticks, m_startTime), g_simRes);
    sinceStart.m_displayUnit = m_cancel.m_displayUnit;
    text = tesk::DisplayTextUnsigned(sinceStart).c_str();
    return true;
}

int CStimulus::CheckSettings(long long *time)
{
    const long long base = Base();
    long long last = 0;
    for (const auto &event : m_events) {
        if (event->IsAbsolute()) {
            if (event->GetTime() >= base)
                continue;
            if (time != nullptr)
                *time = event->GetTime();
            return 1;
        }
        const long long eventTime = WrapAdd(event->GetTime(), base);
        if (eventTime < last)
            return 2;
        last = eventTime;
    }
    if (GetRepeatRateInSimUnits() != 0 && WrapSubtract(last, base) > GetRepeatRateInSimUnits())
        return 3;
    if (m_cancel.m_ticks == 0)
        return 0;
    if (m_cancel.m_ticks <= base)
        return 4;
    return last < m_cancel.m_ticks ? 0 : 5;
}
