#include "waveform/wavestore.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <memory>
#include <span>
#include <stdexcept>
#include <utility>

#include "base/wrap.h"
#include "platform/crt.h"
#include "platform/kestrin.h"
#include "platform/log.h"
#include "waveform/store/eventrun.h"
#include "waveform/store/pendingevents.h"
#include "waveform/store/settling.h"
#include "waveform/store/wordrun.h"

using namespace tesk;

struct WaveStore::WaveSignal {
    std::string m_name;                          // full name
    const Kestrin::KTypeInfo *m_type = nullptr;  // owned by the store, shared by signals of one type
    long long m_firstHandle = 0;                 // of the first scalar element
    long long m_lastHandle = 0;                  // of the last scalar element
    long long m_reach = 0;                       // the highest last handle up to here
};

namespace {

constexpr std::size_t NoRun = CEventRun::NotShared;

// Room for one more; a quarter at a time, since doubling would hold twice of what there is.
template <typename T>
void ReserveForOne(std::vector<T> &items)
{
    if (items.size() == items.capacity())
        items.reserve(items.size() + items.size() / 4 + 16);
}

// Reads "[" index "]"; what follows is not looked at.
bool ReadIndex(const char *text, long long &index)
{
    if (*text != '[')
        return false;
    const char *const digits = text + 1;
    char *end = nullptr;
    index = std::strtoll(digits, &end, 10);
    return end != digits && *end == ']';
}

// The element that an index names, counted from the first handle.
bool FindElement(const Kestrin::KTypeInfo &type, long long index, long long &element)
{
    int left = 0;
    int right = 0;
    int direction = 0;
    if (KindOf(type) != Kestrin::ETypeKind::Array || !type.GetArrayDimensionRanges(0, left, right, direction))
        return false;
    const bool isUpward = direction == 0;
    if (index < (isUpward ? left : right) || index > (isUpward ? right : left))
        return false;
    element = isUpward ? index - left : left - index + right;  // deliberate: not left - index
    return true;
}

const Kestrin::KTypeInfo *FieldType(const Kestrin::KTypeInfo &type, long long field)
{
    return field >= 0 && field < type.GetNbOfFields() ? type.GetFieldKTypeInfo(static_cast<int>(field)) : nullptr;
}

}  // namespace

WaveStore::WaveStore() : m_pending(std::make_unique<CPendingEvents>()) {}
WaveStore::~WaveStore() = default;

void WaveStore::addSignal(const char *name, const char *typeInfo, std::intptr_t, std::intptr_t, std::intptr_t,
                          std::intptr_t, std::intptr_t)
{
    const std::string text = typeInfo != nullptr ? typeInfo : "";
    ReserveForOne(m_signals);
    WaveSignal &signal = m_signals.emplace_back();
    signal.m_name = name != nullptr ? name : "";
    signal.m_type = &m_types.try_emplace(text, text.c_str()).first->second;
    if (m_signals.size() > 1)
        signal.m_reach = m_signals[m_signals.size() - 2].m_reach;
}

void WaveStore::addHandle(const long long *handle, std::intptr_t)
{
    if (handle == nullptr || *handle < 1)
        return;
    if (m_firstHandle == 0)
        m_firstHandle = *handle;
    m_lastHandle = *handle;
    if (m_events.size() == CPendingEvents::MostRuns)
        throw std::length_error("too many elements");
    ReserveForOne(m_events);
    m_events.emplace_back();
}

int WaveStore::endSignal()
{
    if (!m_signals.empty()) {
        WaveSignal &signal = m_signals.back();
        signal.m_firstHandle = m_firstHandle;
        signal.m_lastHandle = m_lastHandle;
        signal.m_reach = std::max(signal.m_reach, m_lastHandle);
    }
    m_firstHandle = 0;
    return 0;
}

void WaveStore::addEvent(const long long *handle, const WaveEvent *event)
{
    if (handle == nullptr || event == nullptr)
        return;
    if (*handle < 1 || *handle > static_cast<long long>(m_events.size()))
        return;
    m_pending->Add(static_cast<std::uint64_t>(*handle - 1), *event);
    if (m_pending->IsFull())
        Settle();
}

void WaveStore::shareEvents(const long long *handle, const long long *original)
{
    if (handle == nullptr || original == nullptr)
        return;
    m_settling.reset();
    Settle();
    const std::size_t run = FindRun(*handle);
    const std::size_t other = FindRun(*original);
    if (run == NoRun || other == NoRun || run == other)
        return;
    SettleWord(m_events[run].Word());
    m_events[run].ShareWith(other);
}

void WaveStore::addWord(const long long *last, std::intptr_t count)
{
    if (m_words.size() == CEventRun::NoWord)
        throw std::length_error("too many words");
    m_settling.reset();
    ReserveForOne(m_words);
    std::span<CEventRun> runs;
    if (last != nullptr && CanShareWord(*last, count))
        runs = {m_events.data() + (*last - count), static_cast<std::size_t>(count)};
    for (CEventRun &run : runs)
        run.SetWord(static_cast<std::uint32_t>(m_words.size()));
    m_words.emplace_back(runs.empty() ? 0 : static_cast<std::uint32_t>(*last), static_cast<std::uint32_t>(runs.size()));
}

// Whether `count` elements up to a handle are there, and stand in no other word.
bool WaveStore::CanShareWord(long long last, std::intptr_t count) const
{
    if (count < 1 || count > 64 || last < count || last > static_cast<long long>(m_events.size()))
        return false;
    const std::span runs(m_events.data() + (last - count), static_cast<std::size_t>(count));
    return std::ranges::all_of(runs, [](const CEventRun &run) { return run.Word() == CEventRun::NoWord; });
}

void WaveStore::addWordEvents(std::size_t word, const long long *time, const WaveWord *before, const WaveWord *after)
{
    if (word >= m_words.size() || time == nullptr || before == nullptr || after == nullptr)
        return;
    m_settling.reset();
    m_words[word].Append(*time, *before, *after);
}

void WaveStore::endEvents()
{
    Settle();
    m_pending->Release();
    m_settling = std::make_unique<CSettling>(m_words.size());
}

// Stores the events that are on their way.
void WaveStore::Settle() const
{
    if (m_pending->IsEmpty())
        return;
    m_pending->HandOut([this](std::uint64_t run, const WaveEvent &event) {
        m_events[FindRun(static_cast<long long>(run) + 1)].Append(event);
    });
}

// Stores what waits in a word.
void WaveStore::SettleWord(std::uint32_t word) const
{
    if (word == CEventRun::NoWord)
        return;
    CEventRun *const lastRun = m_events.data() + m_words[word].Last() - 1;
    m_words[word].HandOut([lastRun](unsigned element, const WaveEvent &event) {
        CEventRun &run = *(lastRun - element);
        if (run.SharedWith() == CEventRun::NotShared)
            run.Append(event);
    });
}

// The same in a look-up: of several threads the first one does it, and the others wait.
void WaveStore::SettleWordOnce(std::uint32_t word) const
{
    if (m_settling != nullptr && word != CEventRun::NoWord)
        m_settling->Once(word, [this, word] { SettleWord(word); });
    else
        SettleWord(word);
}

void WaveStore::setEndTime(const long long *time)
{
    if (time != nullptr)
        m_endTime = *time;
}

void WaveStore::setResolution(const long long *resolution)
{
    if (resolution != nullptr)
        m_resolution = *resolution;
}

void WaveStore::setFlag(bool flag)
{
    m_flag = flag;
}

long long WaveStore::FindSignal(const char *name) const
{
    if (name == nullptr)
        return 0;
    const std::size_t length = std::char_traits<char>::length(name);
    for (const WaveSignal &signal : m_signals) {
        const std::size_t n = signal.m_name.size();
        // A look at what follows comes first: it is cheaper, and seldom right.
        if (n > length || (n < length && name[n] != '[') || _strnicmp(signal.m_name.c_str(), name, n) != 0)
            continue;
        if (n == length)
            return signal.m_firstHandle;
        long long index = 0;
        long long element = 0;
        if (!ReadIndex(name + n, index) || !FindElement(*signal.m_type, index, element))
            continue;
        const long long handle = tesk::WrapAdd(signal.m_firstHandle, element);
        if (handle <= signal.m_lastHandle)
            return handle;
    }
    return 0;
}

const Kestrin::KTypeInfo *WaveStore::GetSignalType(long long handle, bool whole) const
{
    const auto signal = std::ranges::lower_bound(m_signals, handle, {}, &WaveSignal::m_reach);
    if (signal == m_signals.end())
        return nullptr;
    if (whole)
        return signal->m_type;
    switch (KindOf(signal->m_type)) {
    case Kestrin::ETypeKind::Array: return signal->m_type->GetArrayElementKTypeInfo();
    case Kestrin::ETypeKind::Record:
        return FieldType(*signal->m_type, tesk::WrapSubtract(handle, signal->m_firstHandle));
    default: return signal->m_type;
    }
}

// The run that holds the events of a handle, its own or a shared one; `NoRun` for a handle that was not added. A run
// shares with one that does not share at that time, so that this ends.
std::size_t WaveStore::FindRun(long long handle) const
{
    if (handle < 1 || handle > static_cast<long long>(m_events.size()))
        return NoRun;
    auto run = static_cast<std::size_t>(handle - 1);
    while (m_events[run].SharedWith() != CEventRun::NotShared)
        run = m_events[run].SharedWith();
    return run;
}

std::size_t WaveStore::GetSignalCount() const
{
    return m_signals.size();
}

SStoredSignal WaveStore::GetSignal(std::size_t index) const
{
    const WaveSignal &signal = m_signals[index];
    return {signal.m_name.c_str(), signal.m_type, signal.m_firstHandle, signal.m_lastHandle};
}

long long WaveStore::GetOriginal(long long handle) const
{
    const std::size_t run = FindRun(handle);
    return run != NoRun ? static_cast<long long>(run) + 1 : 0;
}

// The run that holds the events of a handle, with all of them in it; null for a handle that was not added.
const CEventRun *WaveStore::FindSettled(long long handle) const
{
    Settle();
    const std::size_t run = FindRun(handle);
    if (run == NoRun)
        return nullptr;
    SettleWordOnce(m_events[run].Word());
    return &m_events[run];
}

bool WaveStore::HasEvents(long long handle) const
{
    const CEventRun *const run = FindSettled(handle);
    return run != nullptr && !run->IsEmpty();
}

const WaveEvent *WaveStore::FindLast(long long handle, long long time) const
{
    return FindLast(handle, time, m_last) ? &m_last : nullptr;
}

const WaveEvent *WaveStore::FindNext(long long handle, long long time) const
{
    return FindNext(handle, time, m_next) ? &m_next : nullptr;
}

bool WaveStore::FindLast(long long handle, long long time, WaveEvent &event) const
{
    const CEventRun *const run = FindSettled(handle);
    return run != nullptr && run->FindLast(time, event);
}

bool WaveStore::FindNext(long long handle, long long time, WaveEvent &event) const
{
    const CEventRun *const run = FindSettled(handle);
    return run != nullptr && run->FindNext(time, event);
}

std::size_t WaveStore::ReadEvents(long long handle, SEventPlace &place, WaveEvent *events, std::size_t room) const
{
    const CEventRun *const run = FindSettled(handle);
    return run != nullptr ? run->Read(place, {events, room}) : 0;
}

WaveStore *ImportVcdFile(const char *path)
try {
    NTARN::NImport::KImport_VCD importer;
    auto store = std::make_unique<WaveStore>();
    importer.connectTarnWriter(store.get());
    importer.setVcdFileName(path != nullptr ? path : "");
    importer.vcdImport();
    return store.release();
} catch (const std::runtime_error &error) {
    Q71log_PrintFormattedString(1, "VCD", "", error.what());
    return nullptr;
} catch (...) {
    Q71log_PrintFormattedString(1, "VCD", "", "Import error.");
    return nullptr;
}
