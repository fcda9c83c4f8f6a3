#include <cstdint>
#include <optional>

#include "base/wrap.h"
#include "core/fileformulaargs.h"
#include "platform/log.h"
#include "platform/tarn.h"
#include "signal/signal.h"
#include "waveform/customstimulus.h"
#include "waveform/files/filekinds.h"
#include "waveform/files/fileuse.h"
#include "waveform/replay/scaledtime.h"

using namespace tesk;

using SimpleString::CStr;
using tesk::WrapAdd;
using tesk::WrapSubtract;

bool CReplayStimulus::IsFinishedAt(long long time)
{
    return MapToWaveTime(time) < 0;
}

long long CReplayStimulus::GetNextEventTime(long long time)
{
    if (time < 0)
        time = 0;
    const auto unlessCancelled = [this](long long next) {
        return m_cancel.m_ticks != 0 && next >= m_cancel.m_ticks ? -1 : next;
    };
    if (unlessCancelled(time) == -1)
        return -1;
    if (time < m_offset.m_ticks)
        return unlessCancelled(m_offset.m_ticks);

    const long long inPeriod = PlaceInPeriod(time);
    const long long place = WrapAdd(m_start.m_ticks, inPeriod);
    SNextChange next{SNextChange::Nothing};
    if (place < m_end.m_ticks)
        next = FindNextChange(ToFileTicks(place));
    if (next.kind == SNextChange::Nothing && m_repeat.m_ticks != 0)
        next = {SNextChange::Change, m_repeat.m_ticks};
    if (next.kind != SNextChange::Change)
        return -1;
    return unlessCancelled(WrapAdd(time, WrapSubtract(next.position, inPeriod)));
}

CReplayStimulus::SNextChange CReplayStimulus::ChangeAt(long long place) const
{
    const long long position = WrapSubtract(place, m_start.m_ticks);
    if (place > m_end.m_ticks || (m_repeat.m_ticks != 0 && position >= m_repeat.m_ticks))
        return {SNextChange::Nothing};
    return {SNextChange::Change, position};
}

namespace {

// A number that is compared with the end time of the file.
long long ComparedWithFile(const STimeValue &time, const tesk::SWaveformFileRules &rules)
{
    return rules.comparesDisplayUnits ? time.GetInDisplayUnit() : time.m_ticks;
}

// Reads a point in simulation time. Without a leading "@" it counts from `now`.
// @return false if it cannot be read
bool ReadPoint(CStr text, long long now, STimeValue &point)
{
    long long base = now;
    if (*text == '@') {
        text = text.Mid(1);
        base = 0;
    }
    if (!ParseTimeArgument(text, g_simRes, point, -1))
        return false;
    const std::uint16_t displayUnit = point.m_displayUnit;
    point.SetFromTicks(WrapAdd(base, point.m_ticks), g_simRes);
    point.m_displayUnit = displayUnit;
    return true;
}

}  // namespace

bool CReplayStimulus::Fill(tesk::IFileUse &use, const tesk::SWaveformFileRules &rules, long long now,
                           const char *arguments)
{
    try {
        CFileFormulaArgs args;
        if (!ParseCustomArgs(arguments, args))
            return false;
        if (rules.renamesBrackets)
            tesk::RenameBrackets(args.m_signal);
        tesk::IWaveformFile *file = use.Use(args.m_file);
        if (file != nullptr && MakeSignal(*file, rules, args.m_signal) &&
            ReadStretch(*file, rules, args.m_start, args.m_end) && ReadPoint(args.m_offset, now, m_offset) &&
            (args.m_cancel.IsEmpty() || ReadPoint(args.m_cancel, now, m_cancel)) &&
            ParseTimeArgument(args.m_repeat, g_simRes, m_repeat, -1) && use.KeepSignal(m_signal->GetHandle()))
            return true;
    } catch (const NTARN::XFileCorrupted &) {
        rules.Log("Waveform file corrupted.");
    } catch (const NTARN::XFileDoesNotExist &) {
        rules.Log("Waveform file does not exist.");
    } catch (...) {  // nothing throws out of the library
    }
    ReleaseSignal();
    return false;
}

bool CReplayStimulus::MakeSignal(tesk::IWaveformFile &file, const tesk::SWaveformFileRules &rules,
                                 const CStr &signalName)
{
    m_fileResolution = file.GetResolution();
    const SScaledTime scaled = ScaleResolution(m_fileResolution);
    m_fileScale = scaled.number;
    m_timeUnit = static_cast<std::uint32_t>(scaled.unit);

    const std::optional<int> handle = file.FindSignal(signalName);
    if (!handle) {
        CStr message;
        message.Format("Signal `%s' not found in waveform file.", static_cast<const char *>(signalName));
        rules.Log(message);
        return false;
    }
    if (file.MakeSignal(*handle, false, &m_signal) < 0)
        return false;
    m_signal->SetName(signalName);
    m_signal->SetHandle(*handle);
    return true;
}

bool CReplayStimulus::ReadStretch(tesk::IWaveformFile &file, const tesk::SWaveformFileRules &rules, const char *start,
                                  const char *end)
{
    const int unit = FileUnit();
    const long long fileEnd = file.GetEndTime();
    m_start.SetFromTicks(0, g_simRes);
    m_start.m_displayUnit = static_cast<std::uint16_t>(unit);
    if (!ParseTimeArgument(start, g_simRes, m_start, unit))
        return false;
    const long long startInFile = ComparedWithFile(m_start, rules);
    if (startInFile > fileEnd || (startInFile == fileEnd && !rules.allowsEmptyStretch))
        return false;

    const long long scale = rules.scalesEnd ? m_fileScale : 1;
    m_end.SetFromValue(static_cast<double>(tesk::WrapMultiply(scale, fileEnd)), unit, unit, g_simRes);
    if (!ParseTimeArgument(end, g_simRes, m_end, unit))
        return false;
    // Deliberate: an end that is written must lie before that of the file.
    if (*end != 0 && ComparedWithFile(m_end, rules) >= fileEnd)
        return false;

    const bool isEmpty =
        m_start.m_ticks > m_end.m_ticks || (m_start.m_ticks == m_end.m_ticks && !rules.allowsEmptyStretch);
    if (isEmpty)
        Q71log_PrintFormattedString(1, "KERNEL", "", "Waveform end time has to be greater than start time.");
    return !isEmpty;
}
