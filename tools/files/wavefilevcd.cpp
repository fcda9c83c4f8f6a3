// VCD files for the tool.
#include <cstdint>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tools/files/wavefile.h"
#include "tools/output.h"
#include "waveform/wavestore.h"

namespace {

// Tells on a terminal how far the import is, on one line that is wiped at the end.
class CProgress {
public:
    CProgress()
    {
        if (IsErrorTerminal())
            NTARN::NImport::SetProgress(Show, this);
    }
    CProgress(const CProgress &) = delete;
    CProgress &operator=(const CProgress &) = delete;
    ~CProgress()
    {
        NTARN::NImport::SetProgress(nullptr, nullptr);
        if (m_percent >= 0)
            std::cerr << "\r\x1B[K" << std::flush;
    }

private:
    static void Show(void *context, long long bytesRead, long long fileSize)
    {
        auto &shown = static_cast<CProgress *>(context)->m_percent;
        const int percent =
            fileSize > 0 ? static_cast<int>(100.0 * static_cast<double>(bytesRead) / static_cast<double>(fileSize)) : 0;
        if (percent == shown)
            return;
        shown = percent;
        std::cerr << "\rReading: " << percent << " %" << std::flush;
    }

    int m_percent = -1;
};

// Reads ahead, of a long element more each time.
class CVcdWalk final : public IElementWalk {
public:
    CVcdWalk(const WaveStore &store, long long handle) : m_store(store), m_handle(handle) {}

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
            m_count = m_store.ReadEvents(m_handle, m_place, m_events);
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

class CVcdFile final : public IWaveFile {
public:
    explicit CVcdFile(std::unique_ptr<WaveStore> store) : m_store(std::move(store))
    {
        for (std::size_t i = 0; i < m_store->GetSignalCount(); ++i) {
            const SStoredSignal signal = m_store->GetSignal(i);
            m_signals.push_back(
                {signal.name, *signal.type, signal.firstHandle, signal.lastHandle - signal.firstHandle + 1});
        }
    }

    long long GetResolution() override { return m_store->GetResolution(); }
    long long GetEndTime() override { return m_store->GetEndTime(); }
    const std::vector<SFileSignal> &GetSignals() override { return m_signals; }
    long long IdentifyEvents(long long element) override { return m_store->GetOriginal(element); }
    std::unique_ptr<IElementWalk> Walk(long long element) override
    {
        return std::make_unique<CVcdWalk>(*m_store, element);
    }

private:
    std::unique_ptr<WaveStore> m_store;
    std::vector<SFileSignal> m_signals;
};

}  // namespace

std::unique_ptr<IWaveFile> OpenVcdFile(const std::string &path)
{
    const CProgress progress;
    std::unique_ptr<WaveStore> store(ImportVcdFile(path.c_str()));
    return store != nullptr ? std::make_unique<CVcdFile>(std::move(store)) : nullptr;
}
