#include "waveform/vcdstimulus.h"

#include <optional>

#include "base/wrap.h"
#include "signal/signal.h"
#include "waveform/replay/sharedfile.h"

using CVcdFile = TSharedFile<WaveStore>;

template <>
WaveStore *CVcdFile::OpenNew(const char *fileName)
{
    return ImportVcdFile(fileName);
}

template <>
std::optional<int> CVcdFile::FindSignal(const char *name)
{
    const long long handle = m_open->FindSignal(name);
    return handle != 0 ? std::optional(static_cast<int>(handle)) : std::nullopt;
}

template <>
const Kestrin::KTypeInfo *CVcdFile::TypeOf(int handle) const
{
    return m_open->GetSignalType(handle, false);
}

bool CVcdStimulus::InitFromFormula(long long now, const char *arguments)
{
    CVcdFile file(m_reader, m_fileName);
    return Fill(file, VcdRules, now, arguments);
}

bool CVcdStimulus::LookUp(long long time, long long &rawValue) const
{
    const long long fileTime = MapToWaveTime(time);
    if (fileTime < 0 || m_reader == nullptr)
        return false;
    const int handle = m_signal->GetHandle();
    if (!m_reader->HasEvents(handle))
        return true;
    const WaveEvent *event = m_reader->FindLast(handle, fileTime);
    if (event == nullptr)
        return false;
    rawValue = static_cast<long long>(event->m_value);
    return true;
}

CVcdStimulus::SNextChange CVcdStimulus::FindNextChange(long long fileTime) const
{
    if (m_reader == nullptr || !m_reader->HasEvents(m_signal->GetHandle()))
        return {SNextChange::Never};
    const WaveEvent *event = m_reader->FindNext(m_signal->GetHandle(), fileTime);
    if (event == nullptr)
        return {SNextChange::Nothing};
    return ChangeAt(ToSimTicks(tesk::WrapMultiply(m_fileScale, event->m_time), FileUnit()));
}
