#include "waveform/files/vcdfile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

#include "signal/signal.h"
#include "waveform/files/elementswalk.h"

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
        const auto room = std::span(m_events).subspan(element * m_ahead, m_ahead);
        read.count =
            static_cast<std::uint32_t>(m_store.ReadEvents(m_first + static_cast<long long>(element), read.place, room));
        read.next = 0;
    }

    const WaveStore &m_store;
    long long m_first;
    std::size_t m_ahead;
    std::vector<SElement> m_elements;
    std::vector<WaveEvent> m_events;
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

std::unique_ptr<IElementsWalk> CVcdFile::WalkTogether(long long first, std::size_t count, std::size_t all)
{
    constexpr std::size_t MostEvents = 1 << 14;  // read ahead of all elements of a signal
    const std::size_t ahead = std::clamp<std::size_t>(MostEvents / all, 1, 15);
    return MakeElementsWalk(CStoredEvents(m_store, first, count, ahead), count);
}

}  // namespace tesk
