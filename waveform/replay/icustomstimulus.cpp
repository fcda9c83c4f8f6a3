#include <cstdint>

#include "base/wrap.h"
#include "platform/kestrin.h"
#include "signal/signal.h"
#include "waveform/customstimulus.h"

using namespace tesk;

using tesk::WrapAdd;
using tesk::WrapModulo;
using tesk::WrapMultiply;
using tesk::WrapSubtract;

ICustomStimulus::~ICustomStimulus()
{
    ReleaseSignal();
}

void ICustomStimulus::Destroy()
{
    ReleaseSignal();
}

void ICustomStimulus::ReleaseSignal()
{
    if (m_signal != nullptr)
        m_signal->Release();
    m_signal = nullptr;
}

void ICustomStimulus::AllowBinary8BytesValues()
{
    m_timeUnit |= BinaryAllowed;
}

bool ICustomStimulus::IsCustom() const
{
    return true;
}

const Kestrin::KTypeInfo *ICustomStimulus::GetSignalTypeInfo() const
{
    return m_signal != nullptr ? m_signal->GetTypeInfo() : nullptr;
}

bool ICustomStimulus::IsFinishedAt(long long)
{
    return false;
}

long long ICustomStimulus::MapToWaveTime(long long time) const
{
    if (time < 0)
        time = 0;
    if (m_cancel.m_ticks != 0 && time >= m_cancel.m_ticks)
        return -1;
    if (time < m_offset.m_ticks)
        return -1;
    const long long place = WrapAdd(m_start.m_ticks, PlaceInPeriod(time));
    return place > m_end.m_ticks ? -1 : ToFileTicks(place);
}

long long ICustomStimulus::PlaceInPeriod(long long time) const
{
    const long long elapsed = WrapSubtract(time, m_offset.m_ticks);
    return m_repeat.m_ticks != 0 ? WrapModulo(elapsed, m_repeat.m_ticks) : elapsed;
}

int ICustomStimulus::FileUnit() const
{
    return static_cast<std::uint16_t>(m_timeUnit & ~BinaryAllowed);
}

long long ICustomStimulus::ToFileTicks(long long place) const
{
    STimeValue time;
    time.SetFromValue(static_cast<double>(WrapMultiply(g_simRes, place)), 0, 0, m_fileResolution);
    return time.m_ticks;
}

long long ICustomStimulus::ToSimTicks(long long count, int unit)
{
    STimeValue time;
    time.SetFromValue(static_cast<double>(count), unit, unit, g_simRes);
    return time.m_ticks;
}

std::size_t ICustomStimulus::RawValueSize() const
{
    const Kestrin::KTypeInfo *type = GetSignalTypeInfo();
    return type != nullptr ? type->GetSimpleSize_OldFormat() : 0;
}

bool ICustomStimulus::StoreText(const void *rawValue, SimpleString::CStr &value) const
{
    const char *text = m_signal != nullptr && rawValue != nullptr ? m_signal->GetValueText(rawValue) : nullptr;
    if (text != nullptr)
        value = text;
    return !value.IsEmpty();
}
