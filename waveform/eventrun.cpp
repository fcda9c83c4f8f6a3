#include "waveform/eventrun.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t LargestChunk = 1024;
constexpr std::size_t SmallestDirectory = 4;

constexpr std::size_t ChunkSize(std::size_t eventsInFront)
{
    return eventsInFront == 0 ? 1 : std::clamp<std::size_t>(eventsInFront / 4, 3, LargestChunk);
}

// How many chunks stand in front of those of the largest size, and how many events they hold together.
struct SGrowth {
    std::size_t chunks = 0;
    std::size_t events = 0;
};

constexpr SGrowth MeasureGrowth()
{
    SGrowth growth;
    for (; ChunkSize(growth.events) < LargestChunk; ++growth.chunks)
        growth.events += ChunkSize(growth.events);
    return growth;
}

constexpr SGrowth Growth = MeasureGrowth();

struct SChunkTable {
    std::array<std::uint16_t, Growth.chunks> firstEvent{};  // of each growing chunk
    std::array<std::uint8_t, Growth.events> chunkOf{};      // the chunk of an event

    constexpr SChunkTable()
    {
        std::size_t event = 0;
        for (std::size_t chunk = 0; chunk < Growth.chunks; ++chunk) {
            firstEvent[chunk] = static_cast<std::uint16_t>(event);
            for (const std::size_t end = event + ChunkSize(event); event < end; ++event)
                chunkOf[event] = static_cast<std::uint8_t>(chunk);
        }
    }
};

constexpr SChunkTable Table;
static_assert(Growth.chunks < 256 && Growth.events < 65536);

struct SPlace {
    std::size_t chunk;
    std::size_t offset;
};

SPlace PlaceOf(std::size_t event)
{
    if (event < Growth.events)
        return {Table.chunkOf[event], event - Table.firstEvent[Table.chunkOf[event]]};
    const std::size_t behind = event - Growth.events;
    return {Growth.chunks + behind / LargestChunk, behind % LargestChunk};
}

void *Check(void *memory)
{
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

}  // namespace

CEventRun::~CEventRun()
{
    Clear();
}

void CEventRun::Clear()
{
    if (m_count == 1) {
        std::free(m_content.single);
    } else if (m_count != 0 && m_count != Shared) {
        for (std::size_t chunk = 0; chunk <= PlaceOf(m_count - 1).chunk; ++chunk)
            std::free(m_content.chunks[chunk]);
        std::free(m_content.chunks);
    }
    m_count = 0;
}

void CEventRun::ShareWith(std::size_t other)
{
    Clear();
    m_content.other = other;
    m_count = Shared;
}

void CEventRun::Append(const WaveEvent &event)
{
    const long long reached = m_count > 0 ? At(m_count - 1).m_time : event.m_time;
    const SPlace place = PlaceOf(m_count);
    WaveEvent *const chunk = place.offset == 0 ? AddChunk(place.chunk) : m_content.chunks[place.chunk];
    chunk[place.offset] = event;
    chunk[place.offset].m_time = std::max(event.m_time, reached);
    ++m_count;
}

WaveEvent *CEventRun::AddChunk(std::size_t index)
{
    auto *const chunk = static_cast<WaveEvent *>(Check(std::malloc(ChunkSize(m_count) * sizeof(WaveEvent))));
    if (index == 0) {
        m_content.single = chunk;
        return chunk;
    }
    try {
        GrowDirectory(index);
    } catch (const std::bad_alloc &) {
        std::free(chunk);
        throw;
    }
    m_content.chunks[index] = chunk;
    return chunk;
}

// Makes room for one chunk more than `chunks`, at least one, which the run has. The directory's size is the next power
// of two.
void CEventRun::GrowDirectory(std::size_t chunks)
{
    if (chunks == 1) {
        auto **directory = static_cast<WaveEvent **>(Check(std::malloc(SmallestDirectory * sizeof(WaveEvent *))));
        directory[0] = m_content.single;
        m_content.chunks = directory;
    } else if (chunks >= SmallestDirectory && std::has_single_bit(chunks)) {
        void *const larger = std::realloc(m_content.chunks, 2 * chunks * sizeof(WaveEvent *));
        m_content.chunks = static_cast<WaveEvent **>(Check(larger));
    }
}

WaveEvent *CEventRun::Chunk(std::size_t index) const
{
    return m_count == 1 ? m_content.single : m_content.chunks[index];
}

const WaveEvent &CEventRun::At(std::size_t index) const
{
    const SPlace place = PlaceOf(index);
    return Chunk(place.chunk)[place.offset];
}

// How many events are not later than `time`.
std::size_t CEventRun::CountUpTo(long long time) const
{
    std::size_t first = 0;
    std::size_t end = m_count;
    while (first < end) {
        const std::size_t middle = first + (end - first) / 2;
        if (At(middle).m_time <= time)
            first = middle + 1;
        else
            end = middle;
    }
    return first;
}

const WaveEvent *CEventRun::FindLast(long long time) const
{
    const std::size_t count = CountUpTo(time);
    return count > 0 ? &At(count - 1) : nullptr;
}

const WaveEvent *CEventRun::FindNext(long long time) const
{
    const std::size_t count = CountUpTo(time);
    return count < m_count ? &At(count) : nullptr;
}
