#include "waveform/tarnstimulus.h"

#include <limits>
#include <string>

#include "base/wrap.h"
#include "platform/kestrin.h"
#include "signal/signal.h"
#include "waveform/files/databasefile.h"
#include "waveform/files/filekinds.h"
#include "waveform/files/fileuse.h"
#include "waveform/replay/namematch.h"

using namespace tesk;

using NTARN::HSignalRange;
using NTARN::IDatabaseReader;
using NTARN::KEventIterator;

namespace {

HSignalRange TopLevel(IDatabaseReader &reader)
{
    const int *begin = reader.RootHandlesBegin();
    const int *end = reader.RootHandlesEnd();
    return begin != end ? HSignalRange{*begin, *(end - 1)} : HSignalRange{};
}

int FindTarnHandle(IDatabaseReader &reader, const char *name, const std::string &parentName, HSignalRange range,
                   int depth)
{
    if (range.first == -1 || depth > DeepestSignal)
        return -1;
    for (long long next = range.first; next <= range.last; ++next) {
        const int handle = static_cast<int>(next);
        const HSignalRange children = reader.GetChildRange(handle);
        std::string path = parentName + reader.GetName(handle);
        const ENameMatch match = MatchName(path, name);
        if (match == ENameMatch::Equals)
            return handle;
        if (match == ENameMatch::Differs)
            continue;
        if (KindOf(reader.GetType(handle)) == Kestrin::ETypeKind::Record)
            path += '.';
        const int found = FindTarnHandle(reader, name, path, children, depth + 1);
        if (found != -1)
            return found;
    }
    return -1;
}

// The first event later than `time`.
KEventIterator EventsBehind(IDatabaseReader &reader, int handle, long long time)
{
    return time < std::numeric_limits<long long>::max() ? reader.EventsFrom(handle, time + 1)
                                                        : reader.EventsEnd(handle);
}

}  // namespace

int FindTarnSignalHandle(IDatabaseReader *reader, const char *name, int parent, const char *parentName,
                         HSignalRange range)
{
    return FindTarnHandle(*reader, name, parentName != nullptr ? parentName : "",
                          parent == -1 ? TopLevel(*reader) : range, 0);
}

bool CTarnStimulus::InitFromFormula(long long now, const char *arguments)
{
    tesk::TSharedUse<tesk::CDatabaseFile> use;
    if (!Fill(use, tesk::FileKind(tesk::EFileKind::Database).rules, now, arguments))
        return false;
    m_reader = use.GetReader();
    m_fileName = use.GetFileName();
    return true;
}

// A host's reader may find its file damaged at any time; there is no value then, and no change.
bool CTarnStimulus::LookUp(long long time, long long &rawValue) const
try {
    const long long fileTime = MapToWaveTime(time);
    if (fileTime < 0 || m_reader == nullptr)
        return false;
    const int handle = m_signal->GetHandle();
    KEventIterator event = EventsBehind(*m_reader, handle, fileTime);
    if (--event == m_reader->EventsEnd(handle))
        return false;
    rawValue = static_cast<long long>(static_cast<unsigned long long>(event.extValue()) << 32 | event.value());
    return true;
} catch (...) {
    return false;
}

CTarnStimulus::SNextChange CTarnStimulus::FindNextChange(long long fileTime) const
try {
    if (m_reader == nullptr)
        return {SNextChange::Never};
    const int handle = m_signal->GetHandle();
    const KEventIterator end = m_reader->EventsEnd(handle);
    KEventIterator event = m_reader->EventsFrom(handle, fileTime);
    if (event == end)  // the stretch runs out, deliberately in a period too
        return {SNextChange::Change, tesk::WrapSubtract(m_end.m_ticks, m_start.m_ticks)};
    if (*event == fileTime)
        event = EventsBehind(*m_reader, handle, fileTime);
    const bool isRepeated = m_repeat.m_ticks != 0;
    if (event == end && isRepeated)
        return {SNextChange::Nothing};
    // Deliberate: the end of the stretch stands in for a change as if it counted units of the file.
    const long long change = event != end ? tesk::WrapMultiply(m_fileScale, *event) : m_end.m_ticks;
    const long long place = ToSimTicks(change, FileUnit());
    if (isRepeated)
        return ChangeAt(place);
    return {SNextChange::Change, tesk::WrapSubtract(place, m_start.m_ticks)};  // deliberate: beyond the end too
} catch (...) {
    return {SNextChange::Never};
}
