// The events of up to 64 neighbouring elements of a bus in time order, packed.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/tarnutil.h"

namespace tesk {

/// Takes the events as words, which is quick, and hands them out by elements when these are asked for.
///
/// An event is the time since the one before, and of each plane that changes those bytes that do.
class CWordRun {
public:
    /// @param last   of the elements, in the caller's counting
    /// @param count  of the elements, up to 64
    CWordRun(std::uint32_t last, std::uint32_t count) : m_last(last), m_count(count) {}

    std::uint32_t Last() const { return m_last; }

    /// A word that is earlier than the one before it is stored with that one's time.
    void Append(long long time, const WaveWord &before, const WaveWord &after);

    /// Calls `take(element, event)` for all events, by time, and forgets them. Elements are counted from the last.
    template <class TTake>
    void HandOut(TTake take)
    {
        if (m_used == 0)
            return;
        SReader reader{m_begin, m_bytes.get(), m_bytes.get() + m_used};
        while (reader.Next()) {
            for (std::uint64_t changed = reader.changed; changed != 0; changed &= changed - 1) {
                const auto element = static_cast<unsigned>(std::countr_zero(changed));
                take(element, WaveEvent{reader.time, PositionAt(reader.word, element), 0});
            }
        }
        m_begin = reader.word;
        Clear();
    }

private:
    struct SFree {
        void operator()(std::uint8_t *bytes) const;
    };
    struct SReader {
        bool Next();

        WaveWord word;
        const std::uint8_t *next;
        const std::uint8_t *end;
        std::uint64_t changed = 0;
        long long time = 0;
    };

    void Reserve(std::size_t size);
    void Clear();

    // All that an event needs is in 32 bytes: a dump goes to thousands of words in turn.
    std::unique_ptr<std::uint8_t[], SFree> m_bytes;
    std::uint32_t m_used = 0;      // bytes
    std::uint32_t m_capacity = 0;  // bytes that there is room for
    long long m_lastTime = 0;
    std::uint32_t m_last;
    std::uint32_t m_count;
    WaveWord m_begin = NoWord;  // in front of the first event that is stored
};

}  // namespace tesk
