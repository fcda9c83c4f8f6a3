// CStimulus: its events, and what value it has when.
#include <algorithm>
#include <iterator>

#include "base/wrap.h"
#include "core/plain/formulareader.h"
#include "core/stimulus.h"

using tesk::WrapAdd;
using tesk::WrapDivide;
using tesk::WrapModulo;
using tesk::WrapMultiply;
using tesk::WrapSubtract;

CStimulus::CStimulus(int width) : m_width(width)
{
    m_repeat = STimeValue::Zero();
    m_offset = STimeValue::Zero();
    m_cancel = STimeValue::Zero();
}

CStimulus::~CStimulus() = default;

void CStimulus::Destroy()
{
    delete this;
}

int CStimulus::Parse(const char *formula, long long startTime, tesk::CSimpleScalarInfo *, bool binaryValues,
                     bool rawValues)
{
    m_startTime = startTime;
    CFormulaReader reader(*this, binaryValues, rawValues);
    const CFormulaReader::EReading reading = reader.ReadFormula(formula != nullptr ? formula : "");
    MoveRelativeEventsToOffset();
    BuildIndex();
    return static_cast<int>(reading);
}

// The time of the first relative event becomes the offset, from which the relative events count from now on.
void CStimulus::MoveRelativeEventsToOffset()
{
    const auto isRelative = [](const auto &event) { return !event->IsAbsolute(); };
    const auto first = std::ranges::find_if(m_events, isRelative);
    if (first == m_events.end() || (*first)->GetTime() <= 0) {
        m_offset = STimeValue::Zero();
        return;
    }
    m_offset = (*first)->m_time;
    for (const auto &event : m_events) {
        if (event->IsAbsolute())
            continue;
        STimeValue &time = event->m_time;
        time.m_ticks = WrapSubtract(time.m_ticks, m_offset.m_ticks);
        time.m_unit = 0;
        time.m_value = WrapMultiply(time.m_ticks, g_simRes);
        if (g_simRes > 1)
            time.m_value = WrapDivide(time.m_value, g_simRes);
    }
}

void CStimulus::BuildIndex()
{
    m_absoluteIndex.clear();
    m_relativeIndex.clear();
    for (std::size_t i = 0; i < m_events.size(); ++i) {
        CTimeIndex &index = m_events[i]->IsAbsolute() ? m_absoluteIndex : m_relativeIndex;
        index.push_back({m_events[i]->GetTime(), i});
    }
    for (CTimeIndex *index : {&m_absoluteIndex, &m_relativeIndex}) {
        // Of equal times the first event in the list counts.
        if (!std::ranges::is_sorted(*index, {}, &SIndexEntry::time))
            std::ranges::stable_sort(*index, {}, &SIndexEntry::time);
        const auto isRepeated = [](const SIndexEntry &first, const SIndexEntry &next) {
            return first.time == next.time;
        };
        index->erase(std::unique(index->begin(), index->end(), isRepeated), index->end());
    }
}

// The entry nearest to `time` in one direction, `time` itself included; null if there is none, or if it is further
// away than a signed 64-bit count can tell.
const CStimulus::SIndexEntry *CStimulus::FindNearest(const CTimeIndex &index, long long time, EDirection direction)
{
    const bool isForward = direction == EDirection::Forward;
    const auto bound = isForward ? std::ranges::lower_bound(index, time, {}, &SIndexEntry::time)
                                 : std::ranges::upper_bound(index, time, {}, &SIndexEntry::time);
    if (bound == (isForward ? index.end() : index.begin()))
        return nullptr;
    const SIndexEntry &entry = isForward ? *bound : *std::prev(bound);
    const long long distance = isForward ? WrapSubtract(entry.time, time) : WrapSubtract(time, entry.time);
    return distance < 0 ? nullptr : &entry;
}

// Where the relative events begin.
long long CStimulus::Base() const
{
    return WrapAdd(m_startTime, m_offset.m_ticks);
}

bool CStimulus::IsCancelledAt(long long time) const
{
    return m_cancel.m_ticks != 0 && time >= m_cancel.m_ticks;
}

// The event in force at `time`, null if there is none.
const CSimpleStimulus *CStimulus::FindEvent(long long time) const
{
    if (m_events.empty() || time < Base() || IsCancelledAt(time))
        return nullptr;
    long long relativeTime = WrapSubtract(time, Base());
    if (m_repeat.m_ticks != 0 && relativeTime >= m_repeat.m_ticks)
        relativeTime = WrapModulo(relativeTime, m_repeat.m_ticks);
    const SIndexEntry *absolute = FindNearest(m_absoluteIndex, time, EDirection::Backward);
    const SIndexEntry *relative = FindNearest(m_relativeIndex, relativeTime, EDirection::Backward);
    if (absolute == nullptr && relative == nullptr)
        return nullptr;
    if (absolute == nullptr || relative == nullptr)
        return m_events[(absolute != nullptr ? absolute : relative)->event].get();
    // Deliberate: an absolute and a relative count are compared as they stand; a tie is no event.
    if (absolute->time == relative->time)
        return nullptr;
    return m_events[(absolute->time > relative->time ? absolute : relative)->event].get();
}

bool CStimulus::GetValue(long long time, SimpleString::CStr &value)
{
    const CSimpleStimulus *event = FindEvent(time);
    if (event == nullptr)
        return false;
    event->GetValue(value);
    return true;
}

bool CStimulus::GetBinary8BytesValue(long long time, long long &value) const
{
    const CSimpleStimulus *event = FindEvent(time);
    if (event == nullptr)
        return false;
    event->GetBinary8BytesValue(value);
    return true;
}

long long CStimulus::GetNextEventTime(long long time)
{
    return NextTime(WrapAdd(time, 1), (m_flags & UseAbsolute) != 0);
}

// The time of the first change at or after `from`, -1 if there is none.
// @param useAbsolute  false for the relative events of one period alone
long long CStimulus::NextTime(long long from, bool useAbsolute) const
{
    if (m_events.empty() || IsCancelledAt(WrapSubtract(from, 1)))
        return -1;
    if (from < Base())
        return NextTime(Base(), useAbsolute);

    const long long absolute = useAbsolute ? NextAbsoluteTime(from) : -1;
    const long long relative = NextRelativeTime(from, useAbsolute);
    const long long next = Nearer(absolute, relative);
    // The cancel time is one last change.
    if (useAbsolute && m_cancel.m_ticks != 0 && (next == -1 || next >= m_cancel.m_ticks))
        return m_cancel.m_ticks;
    return next;
}

// The smaller of two times of which -1 is none. Deliberate: of two equal times neither is told.
long long CStimulus::Nearer(long long absolute, long long relative)
{
    if (absolute == -1)
        return relative;
    if (relative == -1)
        return absolute;
    return absolute == relative ? -1 : std::min(absolute, relative);
}

long long CStimulus::NextAbsoluteTime(long long from) const
{
    const SIndexEntry *entry = FindNearest(m_absoluteIndex, from, EDirection::Forward);
    return entry == nullptr ? -1 : entry->time;
}

// The time, at or after `from`, of the next relative event, -1 if there is none.
// @param wraps  whether the first event of the next period counts too
long long CStimulus::NextRelativeTime(long long from, bool wraps) const
{
    const long long period = m_repeat.m_ticks;
    long long cycles = 0;
    long long position = WrapSubtract(from, Base());
    if (period != 0 && position >= period) {
        cycles = WrapDivide(position, period);
        position = WrapModulo(position, period);
    }
    const SIndexEntry *entry = FindNearest(m_relativeIndex, position, EDirection::Forward);
    if (entry == nullptr && !wraps)
        return -1;
    const long long relative = entry != nullptr ? entry->time : FirstOfNextPeriod();
    if (relative == -1)
        return -1;
    return WrapAdd(relative, WrapAdd(Base(), WrapMultiply(period, cycles)));
}

// The first relative event of the period behind the one that has run out, counted from the start of the latter; -1 if
// there is none.
long long CStimulus::FirstOfNextPeriod() const
{
    if (m_repeat.m_ticks == 0)
        return -1;
    const long long first = NextTime(Base(), false);
    return first == -1 ? -1 : WrapSubtract(WrapAdd(m_repeat.m_ticks, first), Base());
}

bool CStimulus::IsFinishedAt(long long time)
{
    return IsCancelledAt(time);
}

long long CStimulus::GetRepeatRateInSimUnits() const
{
    return m_repeat.m_ticks;
}

long long CStimulus::GetRepeatRate() const
{
    return m_repeat.GetInDisplayUnit();
}
