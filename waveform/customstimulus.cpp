#include "waveform/customstimulus.h"

#include <algorithm>
#include <limits>
#include <string>

#include "base/wrap.h"
#include "platform/morvel.h"
#include "signal/signal.h"
#include "waveform/files/filekinds.h"
#include "waveform/files/streamfile.h"
#include "waveform/replay/namematch.h"
#include "waveform/replay/rawvalue.h"

using namespace tesk;

namespace {

constexpr long long LastTime = std::numeric_limits<long long>::max();

int FindStreamHandle(Morvel::IMorvelRead &stream, const char *name, int parent, const std::string &parentName,
                     int childCount, int depth)
{
    if (depth > DeepestSignal)
        return -1;
    const int count = parent == -1 ? stream.GetSignalCount() : childCount;
    for (int i = 0; i < count; ++i) {
        const int handle = parent == -1 ? stream.GetSignal(i) : stream.GetChild(parent, i);
        bool hasChildren = false;
        int children = 0;
        const char *ownName = nullptr;
        stream.GetInfo(handle, &hasChildren, &children, &ownName, nullptr, nullptr);
        const std::string path = parentName + (ownName != nullptr ? ownName : "");
        const ENameMatch match = MatchName(path, name);
        if (match == ENameMatch::Equals)
            return handle;
        if (match == ENameMatch::Differs || !hasChildren)
            continue;
        const int found = FindStreamHandle(stream, name, handle, path, children, depth + 1);
        if (found != -1)
            return found;
    }
    return -1;
}

}  // namespace

int FindStreamSignalHandle(Morvel::IMorvelRead *stream, const char *name, int parent, const char *parentName,
                           int childCount)
{
    return FindStreamHandle(*stream, name, parent, parentName != nullptr ? parentName : "", childCount, 0);
}

CCustomStimulus::CCustomStimulus() = default;
CCustomStimulus::~CCustomStimulus() = default;

bool CCustomStimulus::InitFromFormula(long long now, const char *arguments)
{
    tesk::CStreamUse use;
    if (!Fill(use, tesk::FileKind(tesk::EFileKind::Stream).rules, now, arguments))
        return false;
    m_store = use.TakeEvents();
    return true;
}

void CCustomStimulus::Destroy()
{
    if (m_reserved != nullptr)
        m_reserved->Release();
    delete this;
}

void CCustomStimulus::GetFormula(SimpleString::CStr &formula)
{
    formula.Empty();
}

int CCustomStimulus::CheckSettings(long long *)
{
    return 0;
}

CCustomStimulus::SNextChange CCustomStimulus::FindNextChange(long long fileTime) const
{
    Morvel::KEventData event;
    if (m_store == nullptr || !m_store->GetFirstEvent(fileTime, &event, nullptr))
        return {SNextChange::Nothing};
    while (event.GetTime() <= fileTime) {  // one step, as the last of several events at one time is found
        if (!m_store->GetNextEvent(&event))
            return ChangeAt(LastTime);
    }
    return ChangeAt(ToSimTicks(tesk::WrapMultiply(m_fileScale, event.GetTime()), FileUnit()));
}

bool CCustomStimulus::GetValue(long long time, SimpleString::CStr &value)
{
    const long long fileTime = MapToWaveTime(time);
    Morvel::KEventData event;
    if (fileTime < 0 || m_store == nullptr || !FindEvent(fileTime, event))
        return false;
    const std::size_t size = std::max(static_cast<std::size_t>(std::max(m_store->GetSecondSize(), 0)), RawValueSize());
    CRawValue rawValue(size);
    if (rawValue.Bytes() != nullptr)
        event.GetValue(rawValue.Bytes(), static_cast<unsigned>(size));
    return StoreText(rawValue.Bytes(), value);
}

// The last event that a walk in simulation ticks reaches: where the file is finer than the simulator, it may lie behind
// `fileTime`.
// @return false if there is none, or if it lies behind that tick
bool CCustomStimulus::FindEvent(long long fileTime, Morvel::KEventData &event) const
{
    if (!m_store->GetFirstEvent(fileTime, &event, nullptr) && !m_store->GetFirstEvent(0, &event, nullptr))
        return false;
    const long long limit = Round(fileTime);
    if (Round(event.GetTime()) > limit)
        return false;
    Morvel::KEventData next = event;
    while (m_store->GetNextEvent(&next) && Round(next.GetTime()) <= limit) {
        m_store->GetFirstEvent(LastFileTime(next.GetTime(), limit), &next, nullptr);
        event = next;
    }
    return true;
}

// A file time in simulation ticks, rounded.
long long CCustomStimulus::Round(long long fileTime) const
{
    return tesk::TruncateToInt64(
        static_cast<double>(fileTime) * static_cast<double>(m_fileResolution) / static_cast<double>(g_simRes) + 0.5);
}

// Whether `Round` has passed `limit`. It rises with the time until it leaves the range of 64 bits, where it falls to
// the smallest number.
bool CCustomStimulus::IsBeyond(long long fileTime, long long limit) const
{
    constexpr long long OutOfRange = std::numeric_limits<long long>::min();
    const long long rounded = Round(fileTime);
    return limit != OutOfRange && (rounded > limit || rounded == OutOfRange);
}

// The last file time, not before `from`, that `Round` does not take beyond `limit`.
long long CCustomStimulus::LastFileTime(long long from, long long limit) const
{
    if (IsBeyond(from, limit))
        return LastTime;  // out of range, where everything counts as early
    long long last = from;
    long long step = 1;
    const auto canStep = [&] { return last <= LastTime - step && !IsBeyond(last + step, limit); };
    for (; canStep() && step <= LastTime / 2; step *= 2)
        last += step;
    for (; step > 0; step /= 2) {
        if (canStep())
            last += step;
    }
    return last;
}
