#include "platform/stream/morvelevents.h"

#include <string_view>
#include <utility>
#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "platform/stream/morvelformat.h"
#include "platform/stream/streampack.h"
#include "platform/stream/varint.h"

namespace Morvel {

namespace {

constexpr long long MaxTime = std::numeric_limits<long long>::max();

// Takes the differences off the front of `bytes`.
bool TakeTimes(std::string_view &bytes, long long first, std::size_t events, std::vector<long long> &times)
{
    const char *next = bytes.data();
    const char *const end = next + bytes.size();
    long long time = first;
    times.reserve(events);
    for (std::size_t i = 0; i < events; ++i) {
        std::uint64_t delta = 0;
        if (i > 0 && !TakeVarint(next, end, delta))
            return false;
        if (delta > static_cast<std::uint64_t>(MaxTime - time))
            return false;
        time += static_cast<long long>(delta);
        times.push_back(time);
    }
    bytes.remove_prefix(static_cast<std::size_t>(next - bytes.data()));
    return true;
}

bool UnpackOld(std::string_view packed, std::string &bytes)
{
    bytes.resize(MaxBlockBytes);
    uLongf size = bytes.size();
    uLong used = packed.size();
    if (uncompress2(reinterpret_cast<Bytef *>(bytes.data()), &size, reinterpret_cast<const Bytef *>(packed.data()),
                    &used) != Z_OK)
        return false;
    bytes.resize(size);
    return used == packed.size();
}

// What our own blocks begin with: the bytes that they unpack to.
bool UnpackMemory(std::string_view packed, std::string &bytes)
{
    const char *next = packed.data();
    std::uint64_t size = 0;
    if (!TakeVarint(next, packed.data() + packed.size(), size) || size > MaxBlockBytes)
        return false;
    packed.remove_prefix(static_cast<std::size_t>(next - packed.data()));
    return UnpackFast(packed, static_cast<std::size_t>(size), bytes);
}

}  // namespace

bool UnpackBlock(EBlockForm form, std::string_view packed, long long first, std::size_t events, unsigned valueSize,
                 SBlock &block)
{
    std::string room;
    if (first < 0 || !(form == EBlockForm::Old ? UnpackOld(packed, room) : UnpackMemory(packed, room)))
        return false;
    std::string_view bytes = room;
    if (!TakeTimes(bytes, first, events, block.times) || bytes.size() != events * valueSize)
        return false;
    block.values = bytes;
    return true;
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

CScalarEvents::CScalarEvents(std::shared_ptr<CBlockCache> cache, EBlockForm form, unsigned valueSize,
                             std::size_t events)
    : m_cache(std::move(cache)), m_form(form), m_valueSize(valueSize), m_events(events),
      m_firstNumber(m_cache->Reserve(static_cast<std::size_t>(BlockCount(events))))
{}

bool CScalarEvents::AddBlock(std::string packed, long long first)
{
    SBlock block;
    if (first < m_lastTime || !UnpackBlock(m_form, packed, first, EventsIn(m_blocks.size()), m_valueSize, block))
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
    UnpackBlock(m_form, m_blocks[number].bytes, m_blocks[number].first, EventsIn(number), m_valueSize, block);
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
