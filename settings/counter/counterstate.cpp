#include "settings/counter/counterstate.h"

#include <algorithm>

#include "base/wrap.h"
#include "platform/log.h"
#include "settings/timeunits.h"

namespace tesk {

namespace {

unsigned g_nextCounterHandle = 0;

void WarnOfStartingValue(const char *kind, const char *startingValue)
{
    SimpleString::CStr message;
    message.Format("Vector length does not match, or starting value `%s' is not correct for circular %s stimulus "
                   "and will be ignored.",
                   startingValue, kind);
    Q71log_PrintFormattedString(2, "KERNEL", "", message);
}

}  // namespace

std::unordered_map<int, CCounterState *> &CounterRegistry()
{
    static auto *const registry = new std::unordered_map<int, CCounterState *>;  // never deleted, nor are its counters
    return *registry;
}

int RegisterCounter(std::unique_ptr<CCounterState> state)
{
    const int handle = static_cast<int>(g_nextCounterHandle++);
    CounterRegistry().emplace(handle, state.release());
    return handle;
}

bool CCounterState::Initialize(const char *formula, int length)
{
    CCounterStimulusInfo settings;
    if (!settings.FromFormula(formula))
        return false;
    static_cast<CCounterStimulusInfoImpl &>(*this) = *settings.GetImpl();
    m_length = length < 0 ? 1 : length;
    if (!ReadPeriod() || !ReadValue(m_startingValue, m_count) || !ReadValue(m_increment, m_incrementValue))
        return false;
    m_next = m_count;
    PrepareCount();
    Advance();
    m_length = std::max(length, 0);
    return true;
}

bool CCounterState::ReadPeriod()
{
    double period = 0.0;
    int unit = -1;
    if (!TextToTime(m_countPeriod, &period, &unit))
        return false;
    unit = UnitOrDefault(unit);
    STimeValue time;
    time.SetFromValue(period, unit, unit, g_simRes);
    m_period = time.m_ticks;
    return m_period > 0;
}

bool CCounterState::ReadValue(const SimpleString::CStr &text, CBitVector &value) const
{
    if (text.IsEmpty() || m_length < 1)
        return false;
    value = CBitVector(static_cast<unsigned>(m_length), text, static_cast<unsigned>(m_displayRadix));
    return value.GetWidth() != 0;
}

// Makes the starting value, already shown as it stands, one that the sequence can go on from.
void CCounterState::PrepareCount()
{
    switch (m_type) {
    case CCounterStimulusInfo::CounterBinary: break;
    case CCounterStimulusInfo::CounterGray: m_count.FromGray(); return;  // what is shown stays the Gray code
    case CCounterStimulusInfo::CounterJohnson: m_count.NormalizeJohnson(IsUp()); break;
    case CCounterStimulusInfo::CounterCircularOne: CheckOneHot(true); break;
    case CCounterStimulusInfo::CounterCircularZero: CheckOneHot(false); break;
    }
    m_next = m_count;
}

void CCounterState::CheckOneHot(bool ones)
{
    if (!m_count.CheckOneHot(ones))
        WarnOfStartingValue(ones ? "one" : "zero", m_startingValue);
}

// Deliberate: the starting value is shown as it is written; only what comes behind it is mirrored.
void CCounterState::Advance()
{
    m_present = m_next;
    switch (m_type) {
    case CCounterStimulusInfo::CounterBinary:
    case CCounterStimulusInfo::CounterGray:
        m_next = m_count;
        if (IsUp())
            m_next.Add(m_incrementValue);
        else
            m_next.Subtract(m_incrementValue);
        break;
    case CCounterStimulusInfo::CounterJohnson:
        m_next = m_count;
        m_next.Johnson(IsUp());
        break;
    case CCounterStimulusInfo::CounterCircularOne: m_next.CircularOne(m_count, IsUp(), m_position); break;
    case CCounterStimulusInfo::CounterCircularZero: m_next.CircularZero(m_count, IsUp(), m_position); break;
    }
    m_count = m_next;
    if (m_type == CCounterStimulusInfo::CounterGray)
        m_next.ToGray();
    if (m_reverseBitOrder)
        m_next.Reverse(m_next.GetWidth());
}

void CCounterState::StartAt(long long time)
{
    m_time = std::max(m_time, time);
}

long long CCounterState::NextTime() const
{
    return WrapAdd(m_time, m_period);
}

bool CCounterState::GetValue(int wire, long long time, SimpleString::CStr &value) const
{
    if (!HasAnswers(wire) || (time != m_time && time != NextTime()))
        return false;
    const CBitVector &source = time == m_time ? m_present : m_next;
    if (m_isWholeVector)
        value = ("2#" + source.ToBinaryText()).c_str();
    else
        value = source.TestBit(static_cast<unsigned>(m_length) - static_cast<unsigned>(wire) - 1) ? "1" : "0";
    return true;
}

long long CCounterState::GetNextEventTime(int wire, long long time)
{
    if (!HasAnswers(wire))
        return -1;
    if (time < m_time)
        return m_time;
    if (time > m_time) {
        Advance();
        m_time = NextTime();
    }
    return NextTime();
}

}  // namespace tesk
