#include "waveform/samplestimulus.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

// The character at `index` places from the right end.
char CharacterAt(const char *text, int index)
{
    const std::size_t length = text != nullptr ? std::strlen(text) : 0;
    const std::size_t place = static_cast<std::size_t>(index);  // a negative one lies beyond every text
    return place < length ? text[length - 1 - place] : '0';
}

}  // namespace

CCMStimulus::CCMStimulus(int handle, int index) : m_handle(handle), m_index(index)
{
    if (CSampleColumn *column = FindColumn())
        ++column->m_useCount;
}

void CCMStimulus::Destroy()
{
    CSampleColumn *column = FindColumn();
    if (column != nullptr && --column->m_useCount == 1) {
        g_SampleColumns.erase(m_handle);
        delete column;
    }
    delete this;
}

CSampleColumn *CCMStimulus::FindColumn() const
{
    const auto found = g_SampleColumns.find(m_handle);
    return found != g_SampleColumns.end() ? found->second : nullptr;
}

// Deliberate: behind the last sample there is none in force.
const SampleEvent *CCMStimulus::FindSample(const CSampleColumn *column, long long time)
{
    if (column == nullptr)
        return nullptr;
    const std::vector<SampleEvent> &events = column->m_events;
    const auto event = std::ranges::lower_bound(events, time, {}, &SampleEvent::m_time);
    if (event == events.end())
        return nullptr;
    if (event->m_time == time)
        return &*event;
    return event != events.begin() ? &*(event - 1) : nullptr;
}

bool CCMStimulus::GetValue(long long time, SimpleString::CStr &value)
{
    const CSampleColumn *column = FindColumn();
    const SampleEvent *sample = FindSample(column, time);
    if (sample == nullptr)
        return false;
    if (column->m_isReal)
        value.Format("%lf", sample->m_real);
    else if (column->m_isInteger && sample->m_text != nullptr)
        value = sample->m_text;
    else
        value = SimpleString::CStr(CharacterAt(sample->m_text, m_index), 1);
    return true;
}

bool CCMStimulus::GetBinary8BytesValue(long long time, long long &value) const
{
    const CSampleColumn *column = FindColumn();
    const SampleEvent *sample = FindSample(column, time);
    if (sample == nullptr || !column->m_isReal)
        return false;
    std::memcpy(&value, &sample->m_real, sizeof value);
    return true;
}

long long CCMStimulus::GetNextEventTime(long long time)
{
    const CSampleColumn *column = FindColumn();
    if (column == nullptr)
        return -1;
    const auto event = std::ranges::upper_bound(column->m_events, time, {}, &SampleEvent::m_time);
    return event != column->m_events.end() ? event->m_time : -1;
}

void CCMStimulus::GetFormula(SimpleString::CStr &formula)
{
    formula.Empty();
}

void CCMStimulus::AllowBinary8BytesValues() {}

bool CCMStimulus::IsCustom() const
{
    return true;
}

const Kestrin::KTypeInfo *CCMStimulus::GetSignalTypeInfo() const
{
    const CSampleColumn *column = FindColumn();
    const std::uintptr_t flag = column != nullptr && column->m_fromMatFile;
    return reinterpret_cast<const Kestrin::KTypeInfo *>(flag);
}

bool CCMStimulus::IsFinishedAt(long long)
{
    return false;
}

bool CCMStimulus::IsCounter() const
{
    return false;
}

int CCMStimulus::CheckSettings(long long *)
{
    return 0;
}
