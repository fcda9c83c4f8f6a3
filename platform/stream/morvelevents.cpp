#include "platform/stream/morvelevents.h"

#include <string_view>
#include <utility>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include "platform/stream/morvelformat.h"

namespace Morvel {

std::uint32_t Crc(std::string_view bytes)
{
    return static_cast<std::uint32_t>(crc32_z(0, reinterpret_cast<const Bytef *>(bytes.data()), bytes.size()));
}

namespace {

constexpr long long MaxTime = std::numeric_limits<long long>::max();

// A number of 7 bits a byte, lowest first; false if it is cut off or does not fit a time.
bool TakeDelta(CByteReader &bytes, long long &delta)
{
    delta = 0;
    for (int shift = 0; shift < 63; shift += 7) {
        const auto byte = bytes.Take<std::uint8_t>();
        delta |= static_cast<long long>(byte & 0x7F) << shift;
        if ((byte & 0x80) == 0)
            return bytes.IsGood();
    }
    return false;
}

bool TakeTimes(CByteReader &bytes, long long first, std::size_t events, std::vector<long long> &times)
{
    long long time = first;
    times.reserve(events);
    for (std::size_t i = 0; i < events; ++i) {
        long long delta = 0;
        if (i > 0 && !TakeDelta(bytes, delta))
            return false;
        if (delta > MaxTime - time)
            return false;
        time += delta;
        times.push_back(time);
    }
    return true;
}

}  // namespace

bool UnpackBlock(std::string_view packed, long long first, std::size_t events, unsigned valueSize, SBlock &block)
{
    if (first < 0)
        return false;
    std::array<Bytef, MaxBlockBytes> room;
    uLongf size = room.size();
    uLong used = packed.size();
    if (uncompress2(room.data(), &size, reinterpret_cast<const Bytef *>(packed.data()), &used) != Z_OK)
        return false;
    CByteReader bytes(std::string_view(reinterpret_cast<const char *>(room.data()), size));
    if (used != packed.size() || !TakeTimes(bytes, first, events, block.times))
        return false;
    block.values = bytes.TakeBytes(std::uint64_t{events} * valueSize);
    return bytes.IsGood() && bytes.Rest().empty();
}

std::uint64_t CBlockCache::Reserve(std::size_t blocks)
{
    const std::uint64_t first = m_next;
    m_next += blocks;
    return first;
}

const SBlock *CBlockCache::Find(std::uint64_t number) const
{
    const auto block = m_blocks.find(number);
    return block != m_blocks.end() ? &block->second : nullptr;
}

const SBlock &CBlockCache::Keep(std::uint64_t number, SBlock &&block)
{
    if (m_blocks.size() >= MaxBlocks)
        m_blocks.clear();
    return m_blocks.insert_or_assign(number, std::move(block)).first->second;
}

CScalarEvents::CScalarEvents(std::shared_ptr<CBlockCache> cache, unsigned valueSize, std::size_t events)
    : m_cache(std::move(cache)), m_valueSize(valueSize), m_events(events),
      m_firstNumber(m_cache->Reserve(static_cast<std::size_t>(BlockCount(events))))
{}

bool CScalarEvents::AddBlock(std::string packed, long long first)
{
    SBlock block;
    if (first < m_lastTime || !UnpackBlock(packed, first, EventsIn(m_blocks.size()), m_valueSize, block))
        return false;
    m_lastTime = block.times.back();
    m_blocks.push_back({std::move(packed), first});
    return true;
}

std::size_t CScalarEvents::EventsIn(std::size_t block) const
{
    return std::min(EventsPerBlock, m_events - block * EventsPerBlock);
}

const SBlock &CScalarEvents::Unpacked(std::size_t number) const
{
    if (const SBlock *found = m_cache->Find(m_firstNumber + number))
        return *found;
    SBlock block;  // it was unpacked before, when it was added
    UnpackBlock(m_blocks[number].bytes, m_blocks[number].first, EventsIn(number), m_valueSize, block);
    return m_cache->Keep(m_firstNumber + number, std::move(block));
}

std::size_t CScalarEvents::CountUpTo(long long time) const
{
    const auto later = std::ranges::upper_bound(m_blocks, time, {}, &SPackedBlock::first);
    if (later == m_blocks.begin())
        return 0;
    const auto number = static_cast<std::size_t>(later - m_blocks.begin()) - 1;
    const std::vector<long long> &times = Unpacked(number).times;
    const auto end = std::ranges::upper_bound(times, time);
    return number * EventsPerBlock + static_cast<std::size_t>(end - times.begin());
}

bool CScalarEvents::PlaceAt(std::size_t position, SEventPlace &place) const
{
    if (position >= m_events)
        return false;
    place = {position, Unpacked(position / EventsPerBlock).times[position % EventsPerBlock]};
    return true;
}

bool CScalarEvents::FindLast(long long time, SEventPlace &place) const
{
    const std::size_t count = CountUpTo(time);
    return count > 0 && PlaceAt(count - 1, place);
}

bool CScalarEvents::FindAfter(long long time, SEventPlace &place) const
{
    return PlaceAt(CountUpTo(time), place);
}

bool CScalarEvents::Step(SEventPlace &place) const
{
    return PlaceAt(place.position + 1, place);
}

void CScalarEvents::CopyValue(const SEventPlace &place, unsigned char *value) const
{
    const SBlock &block = Unpacked(place.position / EventsPerBlock);
    std::memcpy(value, block.values.data() + place.position % EventsPerBlock * m_valueSize, m_valueSize);
}

CBusEvents::CBusEvents(std::vector<std::shared_ptr<const CStoredEvents>> elements) : m_elements(std::move(elements)) {}

bool CBusEvents::FindLast(long long time, SEventPlace &place) const
{
    bool found = false;
    SEventPlace candidate{};
    for (const auto &element : m_elements) {
        if (!element->FindLast(time, candidate) || (found && candidate.time <= place.time))
            continue;
        place = {0, candidate.time};
        found = true;
    }
    return found;
}

bool CBusEvents::FindAfter(long long time, SEventPlace &place) const
{
    bool found = false;
    SEventPlace candidate{};
    for (const auto &element : m_elements) {
        if (!element->FindAfter(time, candidate) || (found && candidate.time >= place.time))
            continue;
        place = {0, candidate.time};
        found = true;
    }
    return found;
}

bool CBusEvents::Step(SEventPlace &place) const
{
    return FindAfter(place.time, place);
}

void CBusEvents::CopyValue(const SEventPlace &place, unsigned char *value) const
{
    SEventPlace last{};
    for (const auto &element : m_elements) {
        if (element->FindLast(place.time, last))
            element->CopyValue(last, value);
        else
            std::memset(value, 0, element->GetValueSize());
        value += element->GetValueSize();
    }
}

unsigned CBusEvents::GetValueSize() const
{
    return m_elements.front()->GetValueSize() * static_cast<unsigned>(m_elements.size());
}

}  // namespace Morvel
