#include "platform/fst/fstblock.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/fst/fstlimits.h"

namespace NTARN {
namespace {

constexpr std::uint64_t MostTime = std::numeric_limits<std::int64_t>::max();
constexpr std::uint64_t HeadSize = 3 * 8;  // begin, end, memory
constexpr std::uint64_t MostVarint = 10;
constexpr std::uint64_t TimesTailSize = 3 * 8;  // unpacked and packed size, count

EFstPacker PackerOf(std::uint8_t letter)
{
    switch (letter) {
    case '4': return EFstPacker::Lz4;
    case 'F': return EFstPacker::FastLz;
    default: return EFstPacker::Zlib;
    }
}

// Takes as many of the last bytes of a stretch.
SFstStretch TakeEnd(SFstStretch &stretch, std::uint64_t size)
{
    if (size > stretch.size)
        throw XFstDamage();
    stretch.size -= size;
    return {stretch.position + stretch.size, size};
}

// Varints at the beginning of a stretch.
class CNumbersAt {
public:
    CNumbersAt(CFstFile &file, const SFstStretch &stretch, unsigned count)
        : m_bytes(file.Read(stretch.position, std::min(stretch.size, count * MostVarint))), m_rest(m_bytes)
    {}
    CNumbersAt(const CNumbersAt &) = delete;

    std::uint64_t Next() { return m_rest.Varint(); }
    std::uint64_t Used() const { return m_bytes.size() - m_rest.Rest().size(); }

private:
    CFstBuffer m_bytes;
    CFstBytes m_rest;
};

// The first and the last of times that are written as distances, none of them too long.
std::pair<std::uint64_t, std::uint64_t> Ends(CFstBytes bytes, std::uint64_t count)
{
    if (count > bytes.Rest().size())
        throw XFstDamage();
    std::uint64_t first = 0;
    std::uint64_t time = 0;
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::uint64_t distance = bytes.Varint();
        if (distance > MostTime - time)
            throw XFstDamage();
        time += distance;
        first = i == 0 ? time : first;
    }
    return {first, time};
}

}  // namespace

CFstTimes::CFstTimes(CFstBytes bytes, std::uint64_t count)
{
    if (count == 0)
        return;
    const auto [first, last] = Ends(bytes, count);
    m_first = first;
    const bool isNear = last - first <= std::numeric_limits<std::uint32_t>::max();
    isNear ? m_near.reserve(static_cast<std::size_t>(count)) : m_far.reserve(static_cast<std::size_t>(count));
    std::uint64_t time = 0;
    for (std::uint64_t i = 0; i < count; ++i) {
        time += bytes.Varint();
        if (isNear)
            m_near.push_back(static_cast<std::uint32_t>(time - first));
        else
            m_far.push_back(time);
    }
}

void CFstTimes::MoveInto(std::uint64_t begin, std::uint64_t end)
{
    if (Count() == 0 || At(0) >= begin || begin > end || At(Count() - 1) - At(0) > end - begin)
        return;
    const std::uint64_t distance = begin - At(0);
    m_first += distance;
    for (std::uint64_t &time : m_far)
        time += distance;
}

CFstPositions::CFstPositions(CFstBytes index, EFstBlock kind, SFstStretch chains) : m_chains(chains)
{
    while (!index.AtEnd()) {
        if (kind == EFstBlock::ChangesAlias2)
            ReadSignedEntry(index);
        else
            ReadEntry(index);
    }
    m_begins.push_back(chains.size);
    m_entries.shrink_to_fit();
    m_begins.shrink_to_fit();
}

SFstStretch CFstPositions::Find(std::uint32_t store) const
{
    const auto entry = std::ranges::lower_bound(m_entries, store, {}, &SEntry::store);
    if (entry == m_entries.end() || entry->store != store)
        return {m_chains.position, 0};
    return StretchOf(static_cast<std::size_t>(entry - m_entries.begin()));
}

// 0 and the number of another store, or a distance with bit 0 set, or a count of stores without changes.
void CFstPositions::ReadEntry(CFstBytes &index)
{
    const std::uint64_t entry = index.Varint();
    if (entry == 0)
        AddAlias(index.Varint());
    else if ((entry & 1) != 0)
        AddChain(entry >> 1);
    else
        Skip(entry >> 1);
}

// Bit 0 set: a distance, or less than 0 for the number of another store, or 0 for the same number as before.
void CFstPositions::ReadSignedEntry(CFstBytes &index)
{
    CFstBytes ahead = index;
    if ((ahead.Byte() & 1) == 0)
        return Skip(index.Varint() >> 1);
    const std::int64_t entry = index.SignedVarint() >> 1;
    if (entry > 0)
        AddChain(static_cast<std::uint64_t>(entry));
    else
        AddAlias(entry < 0 ? ~static_cast<std::uint64_t>(entry) + 1 : m_alias);
}

// Distances count from the packer's letter, one in front of the first chain.
void CFstPositions::AddChain(std::uint64_t distance)
{
    const std::uint64_t before = m_begins.empty() ? 0 : m_begins.back() + 1;
    if (distance == 0 || distance > m_chains.size || before + distance - 1 >= m_chains.size)
        throw XFstDamage();
    m_begins.push_back(before + distance - 1);
    Add(m_begins.size() - 1);
}

void CFstPositions::AddAlias(std::uint64_t store)
{
    m_alias = store;
    const auto entry = std::ranges::lower_bound(m_entries, store - 1, {}, &SEntry::store);
    if (store == 0 || entry == m_entries.end() || entry->store != store - 1)
        throw XFstDamage();
    Add(entry->chain);
}

void CFstPositions::Skip(std::uint64_t stores)
{
    if (stores > std::numeric_limits<std::uint32_t>::max() - m_store)
        throw XFstDamage();
    m_store += stores;
}

void CFstPositions::Add(std::uint64_t chain)
{
    m_entries.push_back({static_cast<std::uint32_t>(m_store), static_cast<std::uint32_t>(chain)});
    Skip(1);
}

CFstBlock::CFstBlock(CFstFile &file, const SFstChangeBlock &block, std::uint64_t mostTimes)
{
    ReadHead(file, block);
    ReadTail(file, block, mostTimes);
}

// Begin, end and memory are followed by the frame, then by the packer's letter and the chains.
void CFstBlock::ReadHead(CFstFile &file, const SFstChangeBlock &block)
{
    SFstStretch rest = {block.position, block.size};
    rest = TakeEnd(rest, rest.size - std::min(rest.size, HeadSize));
    CNumbersAt frame(file, rest, 3);
    m_frameSize = frame.Next();
    const std::uint64_t framePacked = frame.Next();
    frame.Next();  // stores in it: those that it has bytes for
    rest = TakeEnd(rest, rest.size - frame.Used());
    if (framePacked > rest.size)
        throw XFstDamage();
    m_frame = {rest.position, framePacked};
    rest = TakeEnd(rest, rest.size - framePacked);
    CNumbersAt stores(file, rest, 1);
    stores.Next();
    rest = TakeEnd(rest, rest.size - stores.Used());
    const SFstStretch chains = TakeEnd(rest, rest.size - std::min<std::uint64_t>(rest.size, 1));
    m_packer = PackerOf(file.Read(rest.position, 1)[0]);
    m_chains = chains;
}

// The table of positions, its size, the times, their sizes and count.
void CFstBlock::ReadTail(CFstFile &file, const SFstChangeBlock &block, std::uint64_t mostTimes)
{
    const SFstStretch tail = TakeEnd(m_chains, TimesTailSize);
    const CFstBuffer sizes = file.Read(tail.position, tail.size);
    CFstBytes numbers(sizes);
    const std::uint64_t timesSize = numbers.Big<std::uint64_t>();
    const SFstStretch times = TakeEnd(m_chains, numbers.Big<std::uint64_t>());
    const std::uint64_t count = numbers.Big<std::uint64_t>();
    if (count > mostTimes)
        throw XFstTooMuch{{}, "times"};
    if (timesSize / MostVarint > count)
        throw XFstDamage();
    const CFstBuffer distances = FstInflateIfPacked(file.Read(times.position, times.size), timesSize);
    m_times = CFstTimes(CFstBytes(distances), count);

    const SFstStretch indexSize = TakeEnd(m_chains, 8);
    const SFstStretch index =
        TakeEnd(m_chains, CFstBytes(file.Read(indexSize.position, indexSize.size)).Big<std::uint64_t>());
    m_positions = CFstPositions(CFstBytes(file.Read(index.position, index.size)), block.kind, m_chains);
}

// In front of each chain stands its unpacked size, 0 if it was not packed.
CFstBuffer CFstBlock::Chain(CFstFile &file, const SFstStretch &stretch, std::uint64_t most) const
{
    if (stretch.size == 0)
        return {};
    CFstBuffer packed = file.Read(stretch.position, stretch.size);
    CFstBytes bytes(packed);
    const std::uint64_t size = bytes.Varint();
    if (std::max<std::uint64_t>(size, stretch.size) > most)
        throw XFstTooMuch{{}, "changes"};
    return size == 0 ? CFstBuffer(bytes.Rest().begin(), bytes.Rest().end()) : FstUnpack(m_packer, bytes.Rest(), size);
}

CFstBuffer CFstBlock::Frame(CFstFile &file, std::uint64_t most) const
{
    if (m_frameSize > most)
        throw XFstTooMuch{{}, "values"};
    return FstInflateIfPacked(file.Read(m_frame.position, m_frame.size), m_frameSize);
}

}  // namespace NTARN
