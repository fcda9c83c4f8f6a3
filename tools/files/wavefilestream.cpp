// Event-stream files for the tool.
#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/morvel.h"
#include "tools/files/wavefile.h"

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
        std::uint64_t value = 0;
        for (std::size_t i = bytes.size(); i-- > 0;)
            value = value << 8 | bytes[i];
        return value;
    }

    Morvel::KEventsStore m_store;
    Morvel::KEventData m_next;  // behind the batch
    bool m_more;
    std::vector<SEvent> m_batch;
    std::size_t m_taken = 0;
};

class CStreamFile final : public IWaveFile {
public:
    CStreamFile(Morvel::StreamReadPtr stream, Morvel::RawStreamReadPtr raw)
        : m_stream(std::move(stream)), m_raw(std::move(raw))
    {
        for (int i = 0; i < m_stream->GetSignalCount(); ++i)
            AddSignals("", m_stream->GetSignal(i));
    }

    long long GetResolution() override { return m_raw->GetResolution(); }
    long long GetEndTime() override { return m_raw->GetEndTime(); }
    const std::vector<SFileSignal> &GetSignals() override { return m_signals; }

    long long IdentifyEvents(long long element) override { return element; }  // the format has no aliases
    std::unique_ptr<IElementWalk> Walk(long long element) override
    {
        const Morvel::KEventsStore *store = m_raw->GetEventsStore(static_cast<int>(element));
        return store != nullptr ? std::make_unique<CStreamWalk>(*store) : nullptr;
    }

private:
    // A file nests 64 deep at most.
    void AddSignals(const std::string &parentPath, int handle)
    {
        const char *name = nullptr;
        int childCount = 0;
        m_stream->GetInfo(handle, nullptr, &childCount, &name, nullptr, nullptr);
        const Kestrin::KTypeInfo type(m_stream->GetTypeText(handle));
        const std::string path = parentPath + name;
        if (childCount == 0 ? type.IsScalar() : type.IsSimple() && type.GetNbOfElements() == childCount) {
            const int first = childCount > 0 ? m_stream->GetChild(handle, 0) : handle;
            m_signals.push_back({path, type, first, childCount > 0 ? childCount : 1});
            return;
        }
        for (int i = 0; i < childCount; ++i)
            AddSignals(path, m_stream->GetChild(handle, i));
    }

    Morvel::StreamReadPtr m_stream;
    Morvel::RawStreamReadPtr m_raw;
    std::vector<SFileSignal> m_signals;
};

}  // namespace

std::unique_ptr<IWaveFile> OpenStreamFile(const std::string &path)
{
    Morvel::StreamReadPtr stream(Morvel::CreateStreamRead(path.c_str()));
    Morvel::RawStreamReadPtr raw(stream != nullptr ? Morvel::CreateRawMorvelRead(path.c_str()) : nullptr);
    return raw != nullptr ? std::make_unique<CStreamFile>(std::move(stream), std::move(raw)) : nullptr;
}
