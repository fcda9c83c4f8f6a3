#include "tools/files/streamimport.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/bytes.h"
#include "platform/kestrin.h"
#include "platform/stream/streamwriter.h"
#include "platform/tarnutil.h"
#include "tools/files/streamoutput.h"
#include "tools/files/streamsignals.h"
#include "tools/files/wavefile.h"

namespace {

// Hands what an importer sends on to the writer of a stream.
class CStreamImport final : public NTARN::IDatabaseStreamWriter, public NTARN::IWordEvents {
public:
    explicit CStreamImport(Morvel::IStreamWriter &writer) : m_writer(writer) {}

    void open() override {}
    void setOption(std::intptr_t) override {}
    void beginHeader() override {}
    void endHeader() override {}
    void beginSignals() override {}
    void endSignals() override {}
    void endEvents() override {}
    bool acceptsData(std::intptr_t) override { return true; }
    void setFlag(bool) override {}
    void *getInterface() override { return nullptr; }
    bool isCancelled() override { return false; }
    void setUserData(std::intptr_t) override {}

    void addSignal(const char *name, const char *typeInfo, std::intptr_t, std::intptr_t, std::intptr_t, std::intptr_t,
                   std::intptr_t) override
    {
        m_signals.push_back({name, &m_types.try_emplace(typeInfo, typeInfo).first->second, m_originals.size(), 0});
    }
    void addHandle(const long long *handle, std::intptr_t) override
    {
        m_originals.push_back(*handle);
        ++m_signals.back().elements;
    }
    int endSignal() override { return 0; }
    void shareEvents(const long long *handle, const long long *original) override
    {
        m_originals[Place(*handle)] = *original;
    }
    void addWord(const long long *last, std::intptr_t count) override
    {
        m_words.push_back({*last, static_cast<unsigned>(count), 0});
    }
    void beginEvents() override;
    void addEvent(const long long *handle, const WaveEvent *event) override;
    void addWordEvents(std::size_t word, const long long *time, const WaveWord *before, const WaveWord *after) override;
    void setEndTime(const long long *time) override { m_writer.SetEndTime(*time); }
    void setResolution(const long long *resolution) override { m_writer.SetResolution(*resolution); }

private:
    struct SSignal {
        std::string name;
        const Kestrin::KTypeInfo *type;
        std::size_t firstPlace;
        std::size_t elements;
    };
    struct SWord {
        long long last;  // handle
        unsigned count;
        int first;  // what the writer calls the first element
    };

    static std::size_t Place(long long handle) { return static_cast<std::size_t>(handle - 1); }

    Morvel::IStreamWriter &m_writer;
    std::unordered_map<std::string, Kestrin::KTypeInfo> m_types;  // by their texts
    std::vector<SSignal> m_signals;                               // until they are added to the writer
    std::vector<long long> m_originals;                           // of each handle that with the events
    std::vector<int> m_numbers;                                   // of each handle what the writer calls it
    std::vector<SWord> m_words;
};

// All signals have been announced, and which of them share their events.
void CStreamImport::beginEvents()
{
    CStreamSignals stream(m_writer);
    m_numbers.resize(m_originals.size());
    for (const SSignal &signal : m_signals) {
        const int first = stream.Add(signal.name, *signal.type, signal.elements,
                                     [&](std::size_t i) { return m_originals[signal.firstPlace + i]; });
        for (std::size_t i = 0; i < signal.elements; ++i)
            m_numbers[signal.firstPlace + i] = first + static_cast<int>(i);
    }
    for (SWord &word : m_words)
        word.first = m_numbers[Place(word.last - word.count + 1)];
    m_signals = {};
    m_originals = {};
}

void CStreamImport::addEvent(const long long *handle, const WaveEvent *event)
{
    std::array<unsigned char, 8> bytes;
    tesk::StoreLittleEndian(event->m_value, bytes.data(), bytes.size());
    m_writer.AddEvent(m_numbers[Place(*handle)], event->m_time, bytes.data());
}

void CStreamImport::addWordEvents(std::size_t word, const long long *time, const WaveWord *before,
                                  const WaveWord *after)
{
    const SWord &target = m_words[word];
    std::uint64_t changed = 0;
    for (std::size_t i = 0; i < std::size(after->m_planes); ++i)
        changed |= before->m_planes[i] ^ after->m_planes[i];
    changed &= ~std::uint64_t{0} >> (64 - target.count);
    m_writer.AddWord(target.first, target.count, *time, changed, *after);
}

}  // namespace

void ImportEventStream(const std::string &input, const std::string &output)
{
    const StreamWriterPtr writer = BeginEventStream(output, 1);
    CStreamImport import(*writer);
    ImportVcd(input, import);
    FinishEventStream(output, *writer);
}
