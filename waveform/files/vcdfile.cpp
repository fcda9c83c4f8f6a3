#include "waveform/files/vcdfile.h"

#include <sys/stat.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "platform/files/file.h"
#include "platform/log.h"
#include "signal/signal.h"
#include "waveform/files/elementswalk.h"
#include "waveform/files/vcdchanges.h"

namespace tesk {

namespace {

// Reads ahead, of a long element more each time.
class CStoredWalk final : public IElementWalk {
public:
    CStoredWalk(const WaveStore &store, long long handle) : m_store(store), m_handle(handle) {}

    bool Next(long long &time, std::uint64_t &value) override
    {
        const WaveEvent *next = Peek();
        if (next == nullptr)
            return false;
        time = next->m_time;
        for (; next != nullptr && next->m_time == time; next = Peek()) {
            value = next->m_value;
            ++m_next;
        }
        return true;
    }

private:
    static constexpr std::size_t MostEvents = 63;

    const WaveEvent *Peek()
    {
        if (m_next == m_count) {
            if (m_events.size() < MostEvents)
                m_events.resize(2 * m_events.size() + 1);
            m_count = m_store.ReadEvents(m_handle, m_place, m_events.data(), m_events.size());
            m_next = 0;
        }
        return m_next < m_count ? &m_events[m_next] : nullptr;
    }

    const WaveStore &m_store;
    long long m_handle;
    SEventPlace m_place;
    std::vector<WaveEvent> m_events;
    std::size_t m_count = 0;  // read into m_events
    std::size_t m_next = 0;   // the first of them that is not met yet
};

// Elements whose events are read ahead, few at a time.
class CStoredEvents {
public:
    CStoredEvents(const WaveStore &store, long long first, std::size_t count, std::size_t ahead)
        : m_store(store), m_first(first), m_ahead(ahead), m_elements(count), m_events(count * ahead)
    {
        for (std::size_t i = 0; i < count; ++i)
            Read(i);
    }

    bool HasNext(std::size_t element) const { return m_elements[element].next < m_elements[element].count; }
    long long NextTime(std::size_t element) const { return m_events[Place(element)].m_time; }
    void Take(std::size_t element)
    {
        const long long time = NextTime(element);
        do {
            m_elements[element].value = m_events[Place(element)].m_value;
            if (++m_elements[element].next == m_elements[element].count)
                Read(element);
        } while (HasNext(element) && NextTime(element) == time);
    }
    std::uint64_t Value(std::size_t element) const { return m_elements[element].value; }

private:
    struct SElement {
        SEventPlace place;
        std::uint64_t value = 0;
        std::uint32_t count = 0;  // events read
        std::uint32_t next = 0;   // the first of them that is not taken yet
    };

    std::size_t Place(std::size_t element) const { return element * m_ahead + m_elements[element].next; }
    void Read(std::size_t element)
    {
        SElement &read = m_elements[element];
        const std::size_t count = m_store.ReadEvents(m_first + static_cast<long long>(element), read.place,
                                                     m_events.data() + element * m_ahead, m_ahead);
        read.count = static_cast<std::uint32_t>(count);
        read.next = 0;
    }

    const WaveStore &m_store;
    long long m_first;
    std::size_t m_ahead;
    std::vector<SElement> m_elements;
    std::vector<WaveEvent> m_events;
};

// The last time stamp near the end of a file; 0 if there is none, as in a packed one.
long long LastTimeStamp(const std::string &path)
{
    constexpr off_t Reach = 1 << 16;
    const CFile file = CFile::Open(path);
    struct stat status {};
    if (!file.IsOpen() || !file.Status(status))
        return 0;
    std::string text(Reach, '\0');
    const auto begin = static_cast<std::uint64_t>(std::max<off_t>(status.st_size - Reach, 0));
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(file.ReadAt(begin, text.data(), text.size()), 0)));
    const std::size_t at = text.rfind("\n#");
    long long time = 0;
    if (at != std::string::npos)
        std::from_chars(text.data() + at + 2, text.data() + text.size(), time);
    return time;
}

}  // namespace

std::unique_ptr<CVcdFile> CVcdFile::Open(const char *fileName)
try {
    std::error_code ignored;
    if (std::filesystem::is_regular_file(fileName, ignored))
        return std::make_unique<CVcdFile>(fileName, std::make_unique<CVcdOpening>(fileName));
    std::unique_ptr<WaveStore> store(ImportVcdFile(fileName));
    return store != nullptr ? std::make_unique<CVcdFile>(std::move(store)) : nullptr;
} catch (const std::runtime_error &error) {
    Q71log_PrintFormattedString(1, "VCD", "", error.what());
    return nullptr;
}

CVcdFile::CVcdFile(std::unique_ptr<WaveStore> store) : m_owned(std::move(store)), m_store(m_owned.get()) {}

CVcdFile::CVcdFile(std::string path, std::unique_ptr<CVcdOpening> opening)
    : m_path(std::move(path)), m_opening(std::move(opening)), m_store(&m_opening->Store())
{}

// Has the events of all elements read into the store. A file whose values went elsewhere is read once more.
// @return false, with a line in the log, if it cannot be read
bool CVcdFile::HasAll()
try {
    if (m_opening == nullptr || m_opening->IsStored())
        return true;
    if (m_opening->CanRead()) {
        m_opening->ReadAll();
        return true;
    }
    std::unique_ptr<WaveStore> store(ImportVcdFile(m_path.c_str()));
    if (store == nullptr)
        return false;
    m_owned = std::move(store);
    m_store = m_owned.get();
    m_opening.reset();
    return true;
} catch (const std::runtime_error &error) {
    Q71log_PrintFormattedString(1, "VCD", "", error.what());
    return false;
}

// The values can be read once: a file of which they have been read is opened anew.
std::shared_ptr<CVcdOpening> CVcdFile::OpenValues()
{
    m_reading = m_opening;
    if (!m_opening->CanRead())
        m_reading = std::make_shared<CVcdOpening>(m_path);
    if (!m_reading->CanRead() || (m_reading != m_opening && !m_reading->IsLike(*m_opening)))
        throw std::runtime_error(m_path + ": the file has changed since it was opened");
    return m_reading;
}

long long CVcdFile::GetEndTime()
try {
    if (const auto known = FindEndTime())
        return *known;
    const std::shared_ptr<CVcdOpening> values = OpenValues();
    values->SkipAll();
    return values->Store().GetEndTime();
} catch (const std::runtime_error &error) {
    Q71log_PrintFormattedString(1, "VCD", "", error.what());
    return m_store->GetEndTime();
}

std::optional<long long> CVcdFile::FindEndTime()
{
    if (m_opening == nullptr || m_opening->IsRead())
        return m_store->GetEndTime();
    return m_reading != nullptr && m_reading->IsRead() ? std::optional(m_reading->Store().GetEndTime()) : std::nullopt;
}

// While it is not known, the last time stamp of the file.
long long CVcdFile::EstimateEndTime()
{
    const auto known = FindEndTime();
    return known ? *known : LastTimeStamp(m_path);
}

// Whether the values can be read as they come, and the signals are whole ones.
bool CVcdFile::CanReadOnly(const std::vector<SFileSignal> &signals)
{
    if (m_opening == nullptr || m_opening->IsStored())
        return false;
    const std::vector<SFileSignal> &all = GetSignals();
    return std::ranges::all_of(signals, [&all](const SFileSignal &signal) {
        const auto whole = std::ranges::lower_bound(all, signal.firstElement, {}, &SFileSignal::firstElement);
        return whole != all.end() && whole->firstElement == signal.firstElement &&
               whole->elementCount == signal.elementCount;
    });
}

std::unique_ptr<IChangeWalk> CVcdFile::WalkChanges(const std::vector<SFileSignal> &signals)
{
    return CanReadOnly(signals) ? std::make_unique<CVcdWalk>(OpenValues(), signals) : nullptr;
}

std::optional<std::vector<SChangeCount>> CVcdFile::CountChanges(const std::vector<SFileSignal> &signals,
                                                                const SStretch &stretch, const FProgress &progress)
{
    if (!CanReadOnly(signals))
        return std::nullopt;
    return CountVcdChanges(*OpenValues(), signals, stretch, progress);
}

std::optional<int> CVcdFile::FindSignal(const char *name)
{
    const long long handle = m_store->FindSignal(name);
    return handle != 0 ? std::optional(static_cast<int>(handle)) : std::nullopt;
}

long CVcdFile::MakeSignal(int handle, bool whole, ISignal **signal)
{
    const Kestrin::KTypeInfo *type = m_store->GetSignalType(handle, whole);
    return type != nullptr ? CreateSignal(*type, nullptr, signal) : E_FAIL;
}

const std::vector<SFileSignal> &CVcdFile::GetSignals()
{
    if (m_signals)
        return *m_signals;
    m_signals.emplace();
    for (std::size_t i = 0; i < m_store->GetSignalCount(); ++i) {
        const SStoredSignal signal = m_store->GetSignal(i);
        m_signals->push_back(
            {signal.name, *signal.type, signal.firstHandle, signal.lastHandle - signal.firstHandle + 1});
    }
    return *m_signals;
}

std::unique_ptr<IElementWalk> CVcdFile::Walk(long long element)
{
    return HasAll() ? std::make_unique<CStoredWalk>(*m_store, element) : nullptr;
}

std::unique_ptr<IElementsWalk> CVcdFile::WalkTogether(long long first, std::size_t count, std::size_t all)
{
    if (!HasAll())
        return nullptr;
    constexpr std::size_t MostEvents = 1 << 14;  // read ahead of all elements of a signal
    const std::size_t ahead = std::clamp<std::size_t>(MostEvents / all, 1, 15);
    return MakeElementsWalk(CStoredEvents(*m_store, first, count, ahead), count);
}

}  // namespace tesk
