#include "waveform/files/streamfile.h"

#include <array>
#include <cstddef>
#include <cstdint>

#include "base/bytes.h"
#include "signal/signal.h"
#include "waveform/customstimulus.h"

namespace tesk {

namespace {

// Takes many events at a time: a reader keeps only so many blocks unpacked, and a merge goes round all signals.
class CStreamWalk final : public IElementWalk {
public:
    explicit CStreamWalk(const Morvel::KEventsStore &store) : m_store(store), m_more(m_store.GetNextEvent(&m_next)) {}

    bool Next(long long &time, std::uint64_t &value) override
    {
        if (m_taken == m_batch.size() && !TakeBatch())
            return false;
        time = m_batch[m_taken].time;
        value = m_batch[m_taken++].value;
        return true;
    }

private:
    static constexpr std::size_t BatchSize = 64;

    struct SEvent {
        long long time;
        std::uint64_t value;
    };

    bool TakeBatch()
    {
        m_batch.clear();
        m_taken = 0;
        while (m_more && m_batch.size() < BatchSize) {
            SEvent event{m_next.GetTime(), 0};
            for (; m_more && m_next.GetTime() == event.time; m_more = m_store.GetNextEvent(&m_next))
                event.value = Value();
            m_batch.push_back(event);
        }
        return !m_batch.empty();
    }

    std::uint64_t Value() const
    {
        std::array<unsigned char, 8> bytes{};
        m_next.GetValue(bytes.data(), bytes.size());
        return LoadLittleEndian(bytes.data(), bytes.size());
    }

    Morvel::KEventsStore m_store;
    Morvel::KEventData m_next;  // behind the batch
    bool m_more;
    std::vector<SEvent> m_batch;
    std::size_t m_taken = 0;
};

}  // namespace

CStreamFile::CStreamFile(std::unique_ptr<Reader> reader)
    : m_reader(std::move(reader)), m_changes(dynamic_cast<IChangeSource *>(m_reader->events.get()))
{}

CStreamFile::Reader *CStreamFile::OpenReader(const char *fileName)
{
    Morvel::StreamReadPtr signals(Morvel::CreateStreamRead(fileName));
    Morvel::RawStreamReadPtr events(signals != nullptr ? Morvel::CreateRawMorvelRead(fileName) : nullptr);
    return events != nullptr ? new Reader{std::move(signals), std::move(events)} : nullptr;
}

std::optional<int> CStreamFile::FindSignal(const char *name)
{
    const int handle = FindStreamSignalHandle(m_reader->signals.get(), name, -1, nullptr, 0);
    return handle != -1 ? std::optional(handle) : std::nullopt;
}

long CStreamFile::MakeSignal(int handle, bool, ISignal **signal)
{
    const char *type = m_reader->signals->GetTypeText(handle);
    return type != nullptr ? CreateSignal(type, nullptr, signal) : E_FAIL;
}

const std::vector<SFileSignal> &CStreamFile::GetSignals()
{
    if (m_signals)
        return *m_signals;
    m_signals.emplace();
    for (int i = 0; i < m_reader->signals->GetSignalCount(); ++i)
        AddSignals("", m_reader->signals->GetSignal(i));
    return *m_signals;
}

// A file nests 64 deep at most.
void CStreamFile::AddSignals(const std::string &parentPath, int handle)
{
    Morvel::IMorvelRead &stream = *m_reader->signals;
    const char *name = nullptr;
    int childCount = 0;
    stream.GetInfo(handle, nullptr, &childCount, &name, nullptr, nullptr);
    const Kestrin::KTypeInfo &type = TypeOf(stream.GetTypeText(handle));
    const std::string path = parentPath + name;
    if (childCount == 0 ? type.IsScalar() : type.IsSimple() && type.GetNbOfElements() == childCount) {
        const int first = childCount > 0 ? stream.GetChild(handle, 0) : handle;
        m_signals->push_back({path, type, first, childCount > 0 ? childCount : 1});
        return;
    }
    for (int i = 0; i < childCount; ++i)
        AddSignals(path, stream.GetChild(handle, i));
}

// Signals of one type have one text, and a text may be long.
const Kestrin::KTypeInfo &CStreamFile::TypeOf(const char *text)
{
    const auto known = m_types.find(text);
    return known != m_types.end() ? known->second : m_types.try_emplace(text, text).first->second;
}

std::unique_ptr<IElementWalk> CStreamFile::Walk(long long element)
{
    const Morvel::KEventsStore *store = GetEvents(static_cast<int>(element));
    return store != nullptr ? std::make_unique<CStreamWalk>(*store) : nullptr;
}

long long CStreamFile::IdentifyEvents(long long element)
{
    return m_changes != nullptr ? m_changes->IdentifyChanges(element) : element;
}

std::unique_ptr<IChangeWalk> CStreamFile::WalkChanges(const std::vector<SFileSignal> &signals)
{
    return m_changes != nullptr ? m_changes->WalkChanges(ElementsOf(signals)) : nullptr;
}

std::optional<std::vector<SChangeCount>> CStreamFile::CountChanges(const std::vector<SFileSignal> &signals,
                                                                   const SStretch &stretch, const FProgress &progress)
{
    if (m_changes == nullptr)
        return std::nullopt;
    return m_changes->CountChanges(ElementsOf(signals), stretch, progress);
}

IWaveformFile *CStreamUse::Find(const SimpleString::CStr &fileName)
{
    std::unique_ptr<CStreamFile::Reader> reader(CStreamFile::OpenReader(fileName));
    m_file = reader != nullptr ? std::make_unique<CStreamFile>(std::move(reader)) : nullptr;
    return m_file.get();
}

bool CStreamUse::KeepSignal(int handle)
{
    const Morvel::KEventsStore *events = m_file->GetEvents(handle);
    if (events != nullptr)
        m_kept = std::make_unique<Morvel::KEventsStore>(*events);
    return events != nullptr;
}

}  // namespace tesk
