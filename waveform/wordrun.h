// The events of up to 64 neighbouring elements of a bus in time order, packed. Internal.
#pragma once

#include <bit>
#include <utility>

#include "platform/tarnutil.h"
#include "waveform/packedevents.h"

/// Takes the events as words, which is quick, and hands them out by elements when these are asked for.
///
/// An event is the time since the one before, and of each plane that changes those bytes that do.
class CWordRun {
public:
    /// @param last   of the elements, in the caller's counting
    /// @param count  of the elements, 1 to 64
    CWordRun(std::uint32_t last, std::uint32_t count) : m_last(last), m_count(count) {}
    CWordRun(CWordRun &&other) noexcept
        : m_events(std::exchange(other.m_events, nullptr)), m_begin(other.m_begin), m_end(other.m_end),
          m_last(other.m_last), m_count(other.m_count)
    {}
    CWordRun &operator=(CWordRun &&other) = delete;
    ~CWordRun();

    std::uint32_t Last() const { return m_last; }
    std::uint32_t Count() const { return m_count; }
    bool IsEmpty() const { return m_events == nullptr; }

    /// A word that is earlier than the one before it is stored with that one's time.
    void Append(long long time, const WaveWord &word);

    /// Calls `take(element, event)` for all events, by time, and forgets them. Elements are counted from the last.
    template <class TTake>
    void HandOut(TTake take)
    {
        if (IsEmpty())
            return;
        SReader reader(*m_events, m_begin);
        while (reader.Next()) {
            for (std::uint64_t changed = reader.changed; changed != 0; changed &= changed - 1) {
                const auto element = static_cast<unsigned>(std::countr_zero(changed));
                take(element, WaveEvent{reader.time, PositionAt(reader.word, element), 0});
            }
        }
        Clear();
    }

private:
    struct SReader {
        SReader(const SPackedEvents &events, const WaveWord &begin);

        bool Next();

        WaveWord word;
        std::uint64_t changed = 0;
        long long time = 0;
        const std::uint8_t *next;
        const std::uint8_t *end;
    };

    void Clear();

    SPackedEvents *m_events = nullptr;
    WaveWord m_begin = NoWord;  // in front of the first event that is stored
    WaveWord m_end = NoWord;    // behind the last
    std::uint32_t m_last;
    std::uint32_t m_count;
};
