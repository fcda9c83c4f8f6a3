#include "waveform/store/eventrun.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "waveform/store/packedevents.h"
#include "waveform/wavestore.h"

namespace tesk {

// What is behind these 16 bytes in memory are the blocks.
struct CEventRun::SEvents {
    long long lastTime;
    std::uint32_t used;      // bytes of the blocks
    std::uint32_t capacity;  // bytes that there is room for

    std::uint8_t *Bytes() { return reinterpret_cast<std::uint8_t *>(this + 1); }
    const std::uint8_t *Bytes() const { return reinterpret_cast<const std::uint8_t *>(this + 1); }
};

namespace {

constexpr std::size_t BlockSize = 128;

// The low four bits of an event's first byte: a value below 13, or one of these.
constexpr std::uint8_t WholeValue = 13;  // the value follows in 8 bytes
constexpr std::uint8_t WholeEvent = 14;  // the value and the unused word follow in 16 bytes
constexpr std::uint8_t EndOfBlock = 15;

std::uint8_t CodeOf(const WaveEvent &event)
{
    if (event.m_unused != 0)
        return WholeEvent;
    return event.m_value < WholeValue ? static_cast<std::uint8_t>(event.m_value) : WholeValue;
}

std::size_t WordsSize(std::uint8_t code)
{
    return code == WholeEvent ? 16 : code == WholeValue ? 8 : 0;
}

// Bytes of an event that comes `distance` after the one before.
std::size_t SizeOf(std::uint64_t distance, std::uint8_t code)
{
    return PackedHeadSize(distance) + WordsSize(code);
}

void Write(std::uint8_t *to, std::uint64_t distance, std::uint8_t code, const WaveEvent &event)
{
    to = WritePackedHead(to, code, distance);
    if (code < WholeValue)
        return;
    const std::uint64_t words[] = {event.m_value, event.m_unused};
    std::memcpy(to, words, WordsSize(code));
}

// Reads the events of one block, one by one.
class CBlockReader {
public:
    // From an event on, behind one at `time`.
    CBlockReader(const std::uint8_t *next, const std::uint8_t *end, long long time)
        : m_time(time), m_next(next), m_end(end)
    {}
    CBlockReader(const std::uint8_t *begin, const std::uint8_t *end) : m_next(begin + sizeof m_time), m_end(end)
    {
        std::memcpy(&m_time, begin, sizeof m_time);
    }

    bool Next(WaveEvent &event)
    {
        if (m_next == m_end || (*m_next & 0xF) == EndOfBlock)
            return false;
        std::uint8_t code;
        std::uint64_t distance;
        m_next = ReadPackedHead(m_next, code, distance);
        m_time = static_cast<long long>(static_cast<std::uint64_t>(m_time) + distance);
        event = {m_time, code, 0};
        if (code == WholeValue || code == WholeEvent)
            m_next = ReadWord(event.m_value);
        if (code == WholeEvent)
            m_next = ReadWord(event.m_unused);
        return true;
    }

    long long Time() const { return m_time; }
    const std::uint8_t *Place() const { return m_next; }

private:
    const std::uint8_t *ReadWord(std::uint64_t &word) const
    {
        std::memcpy(&word, m_next, sizeof word);
        return m_next + sizeof word;
    }

    long long m_time;  // of the event before; at first that of the first event
    const std::uint8_t *m_next;
    const std::uint8_t *m_end;
};

long long FirstTime(const std::uint8_t *block)
{
    long long time;
    std::memcpy(&time, block, sizeof time);
    return time;
}

}  // namespace

CEventRun::~CEventRun()
{
    std::free(m_events);
}

void CEventRun::ShareWith(std::size_t other)
{
    std::free(m_events);
    m_events = nullptr;
    m_sharedWith = static_cast<std::uint32_t>(other);
}

// Makes room for `size` bytes.
void CEventRun::Reserve(std::size_t size)
{
    const bool isFirst = m_events == nullptr;
    void *bytes = m_events;
    const std::uint32_t capacity = GrowPacked(bytes, sizeof(SEvents), isFirst ? 0 : m_events->used, size);
    m_events = static_cast<SEvents *>(bytes);
    if (isFirst)
        *m_events = {std::numeric_limits<long long>::min(), 0, 0};
    m_events->capacity = capacity;
}

void CEventRun::Append(const WaveEvent &event)
{
    const std::size_t used = m_events != nullptr ? m_events->used : 0;
    const long long lastTime = used > 0 ? m_events->lastTime : event.m_time;
    const long long time = std::max(event.m_time, lastTime);
    const std::uint8_t code = CodeOf(event);

    std::uint64_t distance = static_cast<std::uint64_t>(time) - static_cast<std::uint64_t>(lastTime);
    std::size_t end = used + SizeOf(distance, code);
    const std::size_t blockEnd = (used + BlockSize - 1) / BlockSize * BlockSize;
    const bool beginsBlock = end > blockEnd;
    if (beginsBlock) {
        distance = 0;
        end = blockEnd + sizeof time + SizeOf(0, code);
    }
    if (m_events == nullptr || end > m_events->capacity)
        Reserve(end);
    std::uint8_t *const bytes = m_events->Bytes();
    if (used < blockEnd && beginsBlock)
        bytes[used] = EndOfBlock;
    if (beginsBlock)
        std::memcpy(bytes + blockEnd, &time, sizeof time);
    Write(beginsBlock ? bytes + blockEnd + sizeof time : bytes + used, distance, code, event);
    m_events->used = static_cast<std::uint32_t>(end);
    m_events->lastTime = time;
}

// How many blocks, from the front, begin at `time` or before.
std::size_t CEventRun::CountBlocksUpTo(long long time) const
{
    std::size_t first = 0;
    std::size_t end = m_events != nullptr ? (m_events->used + BlockSize - 1) / BlockSize : 0;
    while (first < end) {
        const std::size_t middle = first + (end - first) / 2;
        if (FirstTime(m_events->Bytes() + middle * BlockSize) <= time)
            first = middle + 1;
        else
            end = middle;
    }
    return first;
}

bool CEventRun::FindLast(long long time, WaveEvent &event) const
{
    const std::size_t blocks = CountBlocksUpTo(time);
    if (blocks == 0)
        return false;
    const std::uint8_t *const bytes = m_events->Bytes();
    CBlockReader block(bytes + (blocks - 1) * BlockSize,
                       bytes + std::min<std::size_t>(blocks * BlockSize, m_events->used));
    for (WaveEvent next; block.Next(next) && next.m_time <= time;)
        event = next;
    return true;
}

bool CEventRun::FindNext(long long time, WaveEvent &event) const
{
    // The block in which `time` lies, then the one behind it.
    const std::size_t blocks = CountBlocksUpTo(time);
    for (std::size_t i = blocks > 0 ? blocks - 1 : 0; m_events != nullptr && i * BlockSize < m_events->used; ++i) {
        const std::uint8_t *const bytes = m_events->Bytes();
        CBlockReader block(bytes + i * BlockSize, bytes + std::min<std::size_t>((i + 1) * BlockSize, m_events->used));
        while (block.Next(event)) {
            if (event.m_time > time)
                return true;
        }
    }
    return false;
}

std::size_t CEventRun::Read(SEventPlace &place, std::span<WaveEvent> events) const
{
    const std::size_t used = m_events != nullptr ? m_events->used : 0;
    std::size_t count = 0;
    while (count < events.size() && place.m_byte < used) {
        const std::uint8_t *const bytes = m_events->Bytes();
        const std::uint8_t *const next = bytes + place.m_byte;
        const std::size_t blockEnd = std::min((place.m_byte / BlockSize + 1) * BlockSize, used);
        CBlockReader block = place.m_byte % BlockSize == 0 ? CBlockReader(next, bytes + blockEnd)
                                                           : CBlockReader(next, bytes + blockEnd, place.m_time);
        while (count < events.size() && block.Next(events[count]))
            ++count;
        place.m_byte = count < events.size() ? blockEnd : static_cast<std::size_t>(block.Place() - bytes);
        place.m_time = block.Time();
    }
    return count;
}

}  // namespace tesk
