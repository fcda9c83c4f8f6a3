#include "waveform/files/vcdfile.h"

#include <cstddef>
#include <cstdint>
#include <utility>

#include "signal/signal.h"

namespace tesk {

namespace {

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

}  // namespace

CVcdFile::CVcdFile(std::unique_ptr<WaveStore> store) : m_owned(std::move(store)), m_store(*m_owned) {}

std::optional<int> CVcdFile::FindSignal(const char *name)
{
    const long long handle = m_store.FindSignal(name);
    return handle != 0 ? std::optional(static_cast<int>(handle)) : std::nullopt;
}

long CVcdFile::MakeSignal(int handle, bool whole, ISignal **signal)
{
    const Kestrin::KTypeInfo *type = m_store.GetSignalType(handle, whole);
    return type != nullptr ? CreateSignal(*type, nullptr, signal) : E_FAIL;
}

const std::vector<SFileSignal> &CVcdFile::GetSignals()
{
    if (m_signals)
        return *m_signals;
    m_signals.emplace();
    for (std::size_t i = 0; i < m_store.GetSignalCount(); ++i) {
        const SStoredSignal signal = m_store.GetSignal(i);
        m_signals->push_back(
            {signal.name, *signal.type, signal.firstHandle, signal.lastHandle - signal.firstHandle + 1});
    }
    return *m_signals;
}

std::unique_ptr<IElementWalk> CVcdFile::Walk(long long element)
{
    return std::make_unique<CVcdWalk>(m_store, element);
}

}  // namespace tesk
