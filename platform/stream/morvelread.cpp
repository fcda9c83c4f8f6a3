// The two readers of event-stream files.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/changes/changewalk.h"
#include "platform/kestrin.h"
#include "platform/log.h"
#include "platform/morvel.h"
#include "platform/stream/morvelevents.h"
#include "platform/stream/morvelindex.h"
#include "platform/stream/streamcache.h"
#include "platform/stream/streamwalk.h"
#include "platform/stream/trackloader.h"

namespace Morvel {

namespace {

void Report(const std::string &file, const char *why)
{
    Q71log_PrintFormattedString(1, "KERNEL", "", ("Event stream " + file + " " + why + ".").c_str());
}

class CMorvelRead final : public IMorvelRead {
public:
    explicit CMorvelRead(const char *file) : m_file(OpenStreamFile(file)) {}

    int GetSignalCount() override { return m_file.index->GetTopLevelCount(); }

    int GetChild(int parent, int number) override
    {
        const SSignalEntry *signal = m_file.index->Find(parent);
        const bool exists = signal != nullptr && number >= 0 && number < signal->childCount;
        return exists ? signal->firstChild + number : -1;
    }

    int GetSignal(int number) override
    {
        return number >= 0 && number < m_file.index->GetTopLevelCount() ? number : -1;
    }

    void GetInfo(int handle, bool *hasChildren, int *childCount, const char **name, int *mode, int *reserved) override
    {
        const SSignalEntry *signal = m_file.index->Find(handle);
        const int count = signal != nullptr ? signal->childCount : 0;
        Set(hasChildren, count > 0);
        Set(childCount, count);
        Set(name, signal != nullptr ? signal->name : "");
        Set(mode, 0);
        Set(reserved, 0);
    }

    const char *GetTypeText(int handle) override
    {
        const SSignalEntry *signal = m_file.index->Find(handle);
        return signal != nullptr ? signal->typeText : nullptr;
    }

    void Release() override { delete this; }

private:
    template <class T>
    static void Set(T *target, T value)
    {
        if (target != nullptr)
            *target = value;
    }

    SStreamFile m_file;
};

using EventsPtr = std::shared_ptr<const CStoredEvents>;

class CRawMorvelRead final : public IRawMorvelRead, public tesk::IChangeSource {
public:
    explicit CRawMorvelRead(const char *file) : m_name(file), m_file(OpenStreamFile(file)) {}

    long long GetResolution() override { return m_file.index->GetResolution(); }
    long long GetEndTime() override { return m_file.index->GetEndTime(); }
    const KEventsStore *GetEventsStore(int handle) override;

    long long IdentifyChanges(long long element) override;
    std::unique_ptr<tesk::IChangeWalk> WalkChanges(std::span<const tesk::SElements> signals) override;
    std::optional<std::vector<tesk::SChangeCount>> CountChanges(std::span<const tesk::SElements> signals,
                                                                const tesk::SStretch &stretch,
                                                                const tesk::FProgress &progress) override;

private:
    bool CanWalk() const { return m_file.index->HasStretches() && AreStretchesInOrder(*m_file.index); }
    void Tell(const XFault &fault);

    std::unique_ptr<const KEventsStore> MakeStore(int handle);
    EventsPtr Load(int handle);
    EventsPtr LoadNew(int handle, const SSignalEntry &signal);
    EventsPtr LoadOldScalar(const SSignalEntry &signal, unsigned valueSize);
    EventsPtr LoadScalar(int handle, const SSignalEntry &signal, unsigned valueSize);
    EventsPtr LoadBus(const SSignalEntry &signal, const Kestrin::KTypeInfo &type);

    std::string m_name;
    SStreamFile m_file;
    std::set<std::string> m_told;  // faults: many signals may have a block in common
    std::shared_ptr<CBlockCache> m_cache = std::make_shared<CBlockCache>();
    std::map<int, std::unique_ptr<const KEventsStore>> m_stores;  // null: there is none
    std::map<int, EventsPtr> m_events;                            // a scalar shares them with the bus that it is in
};

const KEventsStore *CRawMorvelRead::GetEventsStore(int handle)
try {
    const auto store = m_stores.find(handle);
    if (store != m_stores.end())
        return store->second.get();
    if (m_file.index->Find(handle) == nullptr)
        return nullptr;
    return m_stores.emplace(handle, MakeStore(handle)).first->second.get();
} catch (const std::bad_alloc &) {
    return nullptr;
}

// A host opens a file for each element of a bus, and closes it again. What its events keep of the file spares the next
// opening to read the index.
EventsPtr KeepWith(EventsPtr events, const SStreamFile &file)
{
    struct SKept {
        EventsPtr events;
        SStreamFile file;
    };
    auto kept = std::make_shared<SKept>(SKept{std::move(events), file});
    if (!file.isPacked)
        kept->file.bytes = nullptr;  // a new opening has its own
    const CStoredEvents *const stored = kept->events.get();
    return {std::move(kept), stored};
}

std::unique_ptr<const KEventsStore> CRawMorvelRead::MakeStore(int handle)
try {
    EventsPtr events = Load(handle);
    return events != nullptr ? std::make_unique<KEventsStore>(KeepWith(std::move(events), m_file)) : nullptr;
} catch (const XFault &fault) {
    Tell(fault);
    return nullptr;
}

void CRawMorvelRead::Tell(const XFault &fault)
{
    if (m_told.insert(fault.what()).second)
        Report(m_name, fault.what());
}

long long CRawMorvelRead::IdentifyChanges(long long element)
{
    const SSignalEntry *signal = m_file.index->Find(static_cast<int>(element));
    return signal != nullptr && signal->track != NoTrack ? -1 - static_cast<long long>(signal->track) : element;
}

// Walks through the stretches of a file. What is wrong with them ends the walk with a message that names the file.
class CNamedWalk final : public tesk::IChangeWalk {
public:
    CNamedWalk(std::string name, std::unique_ptr<tesk::IChangeWalk> walk)
        : m_name(std::move(name)), m_walk(std::move(walk))
    {}

    bool PeekTime(long long &time) override
    try {
        return m_walk->PeekTime(time);
    } catch (const XFault &fault) {
        Throw(fault);
    }
    bool Next(long long &time, long long until) override
    try {
        return m_walk->Next(time, until);
    } catch (const XFault &fault) {
        Throw(fault);
    }
    std::span<const std::uint32_t> GetChanged() const override { return m_walk->GetChanged(); }
    const tesk::CElementValues &GetValues(std::size_t signal) override { return m_walk->GetValues(signal); }
    std::span<const std::uint8_t> GetPositions(std::size_t signal) override { return m_walk->GetPositions(signal); }

private:
    [[noreturn]] void Throw(const XFault &fault) const
    {
        throw std::runtime_error("Event stream " + m_name + " " + fault.what());
    }

    std::string m_name;
    std::unique_ptr<tesk::IChangeWalk> m_walk;
};

// A file that cannot be walked so is walked scalar by scalar, which tells what is wrong with it.
std::unique_ptr<tesk::IChangeWalk> CRawMorvelRead::WalkChanges(std::span<const tesk::SElements> signals)
try {
    if (!CanWalk())
        return nullptr;
    return std::make_unique<CNamedWalk>(m_name, std::make_unique<CStreamWalk>(m_file, signals));
} catch (const XFault &) {
    return nullptr;
}

std::optional<std::vector<tesk::SChangeCount>> CRawMorvelRead::CountChanges(std::span<const tesk::SElements> signals,
                                                                            const tesk::SStretch &stretch,
                                                                            const tesk::FProgress &progress)
try {
    if (!CanWalk())
        return std::nullopt;
    std::vector<tesk::SChangeCount> counts(signals.size());
    CStreamWalk walk(m_file, signals, CStreamWalk::EValues::Dropped);
    long long time = 0;
    while (walk.Next(time, stretch.until.value_or(std::numeric_limits<long long>::max()))) {
        progress(time, GetEndTime());
        if (!stretch.Has(time))
            continue;
        for (const std::uint32_t signal : walk.GetChanged())
            counts[signal].Add(time);
    }
    return counts;
} catch (const XFault &) {
    return std::nullopt;
}

EventsPtr CRawMorvelRead::Load(int handle)
{
    const auto known = m_events.find(handle);
    if (known != m_events.end())
        return known->second;
    return m_events.emplace(handle, LoadNew(handle, *m_file.index->Find(handle))).first->second;
}

EventsPtr CRawMorvelRead::LoadNew(int handle, const SSignalEntry &signal)
{
    const Kestrin::KTypeInfo &type = m_file.index->TypeOf(signal);
    if (signal.childCount > 0)
        return KindOf(type) == Kestrin::ETypeKind::Array && type.IsSimple() ? LoadBus(signal, type) : nullptr;
    if (type.IsScalar() && m_file.index->HasStretches())
        return LoadScalar(handle, signal, type.GetScalarSize_OldFormat());
    if (type.IsScalar())
        return LoadOldScalar(signal, type.GetScalarSize_OldFormat());
    if (signal.events > 0)
        throw XFault("is damaged: a signal has events that its type cannot have");
    return nullptr;
}

// The elements of an array lie together and are asked for one after the other: so many are gathered at once.
constexpr std::uint32_t TracksAtOnce = 256;

// The tracks that are gathered with one: of its neighbours in an array. @return the first and how many
std::pair<std::uint32_t, std::uint32_t> TracksWith(const CStreamIndex &index, int handle, std::uint32_t track)
{
    const SSignalEntry *parent = index.FindParent(handle);
    if (parent == nullptr || !index.TypeOf(*parent).IsSimple())
        return {track, 1};
    const int begin = parent->firstChild +
                      (handle - parent->firstChild) / static_cast<int>(TracksAtOnce) * static_cast<int>(TracksAtOnce);
    const int end = std::min(begin + static_cast<int>(TracksAtOnce), parent->firstChild + parent->childCount);
    const std::uint32_t first = index.Find(begin)->track;
    for (int i = begin; i < end; ++i) {
        if (index.Find(i)->track == NoTrack || index.Find(i)->track != first + static_cast<std::uint32_t>(i - begin))
            return {track, 1};
    }
    return {first, static_cast<std::uint32_t>(end - begin)};
}

EventsPtr CRawMorvelRead::LoadScalar(int handle, const SSignalEntry &signal, unsigned valueSize)
{
    if (signal.track == NoTrack || m_file.index->ValueSizeOf(signal.track) != valueSize)
        throw XFault("is damaged: a signal has events that its type cannot have");
    SLoadedTracks &loaded = m_file.cache->lastLoaded;
    if (!loaded.Has(signal.track)) {
        const auto [first, count] = TracksWith(*m_file.index, handle, signal.track);
        loaded = LoadTracks(m_file, m_cache, first, count);
    }
    return loaded.events[signal.track - loaded.first];
}

EventsPtr CRawMorvelRead::LoadOldScalar(const SSignalEntry &signal, unsigned valueSize)
{
    auto events =
        std::make_shared<CScalarEvents>(m_cache, EBlockForm::Old, valueSize, static_cast<std::size_t>(signal.events));
    CByteReader bytes(signal.blocks);
    while (!bytes.AtEnd()) {
        const SBlockEntry entry = TakeBlockEntry(bytes);
        if (!events->AddBlock(m_file.ReadBlock(entry), entry.first))
            throw XFault("is damaged: a block is not what the index says");
    }
    return events;
}

EventsPtr CRawMorvelRead::LoadBus(const SSignalEntry &signal, const Kestrin::KTypeInfo &type)
{
    const unsigned size = type.GetScalarSize_OldFormat();
    bool fits = type.GetNbOfElements() == signal.childCount &&
                signal.childCount <= std::numeric_limits<int>::max() / static_cast<int>(size);
    std::vector<EventsPtr> elements;
    for (int i = 0; fits && i < signal.childCount; ++i) {
        elements.push_back(Load(signal.firstChild + i));
        fits = elements.back() != nullptr && elements.back()->GetValueSize() == size;
    }
    if (!fits)
        throw XFault("is damaged: the elements of an array do not fit its type");
    return std::make_shared<CBusEvents>(std::move(elements));
}

bool IsMissing(const char *file)
{
    std::error_code error;
    return file == nullptr || std::filesystem::status(file, error).type() == std::filesystem::file_type::not_found;
}

template <class Reader>
Reader *Open(const char *file)
try {
    return IsMissing(file) ? nullptr : new Reader(file);
} catch (const XFault &fault) {
    Report(file, fault.what());
    return nullptr;
} catch (const std::exception &) {  // nothing throws out of the library
    Report(file, "cannot be read: it takes too much memory");
    return nullptr;
}

}  // namespace

IMorvelRead *CreateStreamRead(const char *file)
{
    return Open<CMorvelRead>(file);
}

IRawMorvelRead *CreateRawMorvelRead(const char *file)
{
    return Open<CRawMorvelRead>(file);
}

void DeleteRawMorvelRead(IRawMorvelRead *reader)
{
    delete reader;
}

}  // namespace Morvel
