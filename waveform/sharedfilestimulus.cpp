#include "waveform/sharedfilestimulus.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "base/wrap.h"
#include "core/kinds/keywords.h"
#include "signal/signal.h"
#include "waveform/replay/rawvalue.h"
#include "waveform/replay/scaledtime.h"

using namespace tesk;

using tesk::WrapSubtract;

namespace {

// A time that was read with a unit of its own has no display unit; it is written back in that of the simulator.
STimeValue ToWrite(STimeValue time)
{
    constexpr std::uint16_t NoUnit = 0xFFFF;
    if (time.m_displayUnit == NoUnit)
        time.m_displayUnit = static_cast<std::uint16_t>(ScaleResolution(g_simRes).unit);
    return time;
}

std::string TimeText(const STimeValue &time)
{
    return tesk::DisplayText(ToWrite(time));
}

}  // namespace

template <typename TReader>
void TSharedFileStimulus<TReader>::Destroy()
{
    delete this;
}

template <typename TReader>
bool TSharedFileStimulus<TReader>::GetValue(long long time, SimpleString::CStr &value)
{
    long long found = 0;
    if (!LookUp(time, found))
        return false;
    CRawValue rawValue(std::max(sizeof found, RawValueSize()));
    if (rawValue.Bytes() != nullptr)
        std::memcpy(rawValue.Bytes(), &found, sizeof found);
    return StoreText(rawValue.Bytes(), value);
}

template <typename TReader>
bool TSharedFileStimulus<TReader>::GetBinary8BytesValue(long long time, long long &value) const
{
    return AllowsBinary() && LookUp(time, value);
}

template <typename TReader>
void TSharedFileStimulus<TReader>::GetFormula(SimpleString::CStr &formula)
{
    const char *name = m_signal != nullptr ? m_signal->GetName() : "";
    std::string text = '"' + std::string(tesk::CustomKeyword) + ' ' +
                       std::string(m_fileName != nullptr ? m_fileName : "") + "," + name + "," + TimeText(m_start) +
                       "," + TimeText(m_end) + "\"";
    if (m_offset.m_ticks != 0)
        text += " @" + TimeText(m_offset);
    if (m_repeat.m_ticks != 0)
        text += " -r " + TimeText(m_repeat);
    if (m_cancel.m_ticks != 0)
        text += " -cancel @" + TimeText(m_cancel);
    formula = text.c_str();
}

template <typename TReader>
int TSharedFileStimulus<TReader>::CheckSettings(long long *)
{
    const long long length = WrapSubtract(m_end.m_ticks, m_start.m_ticks);
    if (m_start.m_ticks >= m_end.m_ticks)
        return 6;
    if (m_repeat.m_ticks != 0 && m_repeat.m_ticks < length)
        return 3;
    if (m_cancel.m_ticks == 0)
        return 0;
    if (m_cancel.m_ticks <= m_offset.m_ticks)
        return 4;
    return m_cancel.m_ticks < length ? 5 : 0;
}

template <typename TReader>
bool TSharedFileStimulus<TReader>::GetRepeatString(SimpleString::CStr &text) const
{
    if (m_repeat.m_ticks != 0)
        text = TimeText(m_repeat).c_str();
    return false;
}

template <typename TReader>
bool TSharedFileStimulus<TReader>::GetCancelString(SimpleString::CStr &text) const
{
    if (m_cancel.m_ticks == 0)
        return false;
    text = ("@" + TimeText(m_cancel)).c_str();
    return true;
}

template <typename TReader>
long long TSharedFileStimulus<TReader>::GetRepeatRateInSimUnits() const
{
    return m_repeat.m_ticks;
}

template <typename TReader>
long long TSharedFileStimulus<TReader>::GetRepeatRate() const
{
    return ToWrite(m_repeat).GetInDisplayUnit();
}

template class TSharedFileStimulus<NTARN::IDatabaseReader>;
template class TSharedFileStimulus<WaveStore>;
