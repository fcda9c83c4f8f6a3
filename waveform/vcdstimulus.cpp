#include "waveform/vcdstimulus.h"

#include "base/wrap.h"
#include "signal/signal.h"
#include "waveform/files/filekinds.h"
#include "waveform/files/fileuse.h"
#include "waveform/files/vcdfile.h"

bool CVcdStimulus::InitFromFormula(long long now, const char *arguments)
{
    tesk::TSharedUse<tesk::CVcdFile> use;
    if (!Fill(use, tesk::FileKind(tesk::EFileKind::Vcd).rules, now, arguments))
        return false;
    m_reader = use.GetReader();
    m_fileName = use.GetFileName();
    return true;
}

bool CVcdStimulus::LookUp(long long time, long long &rawValue) const
{
    const long long fileTime = MapToWaveTime(time);
    if (fileTime < 0 || m_reader == nullptr)
        return false;
    const int handle = m_signal->GetHandle();
    if (!m_reader->HasEvents(handle))
        return true;
    WaveEvent event{};
    if (!m_reader->FindLast(handle, fileTime, event))
        return false;
    rawValue = static_cast<long long>(event.m_value);
    return true;
}

CVcdStimulus::SNextChange CVcdStimulus::FindNextChange(long long fileTime) const
{
    if (m_reader == nullptr || !m_reader->HasEvents(m_signal->GetHandle()))
        return {SNextChange::Never};
    WaveEvent event{};
    if (!m_reader->FindNext(m_signal->GetHandle(), fileTime, event))
        return {SNextChange::Nothing};
    return ChangeAt(ToSimTicks(tesk::WrapMultiply(m_fileScale, event.m_time), FileUnit()));
}
