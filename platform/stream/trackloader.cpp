#include "platform/stream/trackloader.h"

#include <algorithm>
#include <bit>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/bytes.h"
#include "platform/stream/streampack.h"
#include "platform/stream/varint.h"

namespace Morvel {

namespace {

[[noreturn]] void FailBlock()
{
    throw XFault("is damaged: a block is not what the index says");
}

// Packs the events of one scalar, block by block.
class CScalarBuilder {
public:
    CScalarBuilder(unsigned valueSize, std::uint64_t events) : m_valueSize(valueSize), m_left(events) {}

    void Add(long long time, std::uint64_t value)
    {
        if (time < m_last || m_left == 0)
            FailBlock();
        if (m_inBlock == 0)
            m_first = time;
        else
            AppendVarint(m_times, static_cast<std::uint64_t>(time - m_last));
        tesk::AppendLittleEndian(value, m_valueSize, m_values);
        m_last = time;
        --m_left;
        ++m_count;
        if (++m_inBlock == EventsPerBlock)
            Pack();
    }

    std::shared_ptr<const CStoredEvents> Finish(const std::shared_ptr<CBlockCache> &cache)
    {
        if (m_left != 0)
            FailBlock();
        if (m_inBlock > 0)
            Pack();
        auto events = std::make_shared<CScalarEvents>(cache, EBlockForm::Memory, m_valueSize, m_count);
        for (SPackedBlock &block : m_blocks)
            events->AddKnownBlock(std::move(block.bytes), block.first);
        return events;
    }

private:
    struct SPackedBlock {
        std::string bytes;
        long long first;
    };

    void Pack()
    {
        m_times += m_values;
        std::string block;
        AppendVarint(block, m_times.size());
        block += PackFast(m_times);
        m_blocks.push_back({std::move(block), m_first});
        m_times.clear();
        m_values.clear();
        m_inBlock = 0;
    }

    unsigned m_valueSize;
    std::uint64_t m_left;     // events that are missing
    std::size_t m_count = 0;  // events so far
    std::vector<SPackedBlock> m_blocks;
    std::size_t m_inBlock = 0;  // events of the one that is being filled
    long long m_first = 0;      // of the block
    long long m_last = 0;
    std::string m_times;
    std::string m_values;
};

using CBuilders = std::vector<CScalarBuilder>;

// Hands the events of a chunk to those builders whose tracks are in it.
void TakeChunk(CGroupDecoder &decoder, const std::vector<long long> &times, const SChunk &chunk, std::uint32_t first,
               CBuilders &builders)
{
    const std::uint32_t last = chunk.firstTrack + chunk.count - 1;
    while (decoder.Next()) {
        const long long time = times[decoder.Time()];
        for (std::uint64_t changed = decoder.Changed(); changed != 0; changed &= changed - 1) {
            const auto bit = static_cast<unsigned>(std::countr_zero(changed));
            const std::uint32_t track = last - bit;
            if (track >= first && track - first < builders.size())
                builders[track - first].Add(time, decoder.Value(bit));
        }
    }
    if (!decoder.IsGood())
        FailBlock();
}

void TakeStretch(const SStreamFile &file, std::size_t stretch, std::uint32_t first, CBuilders &builders)
{
    const auto table = file.cache->Table(file, stretch);
    const std::uint32_t end = first + static_cast<std::uint32_t>(builders.size());
    const std::uint32_t least =
        first < MaxGroup ? 0 : first - MaxGroup + 1;  // of a chunk that reaches as far as `first`
    auto chunk = std::ranges::lower_bound(table->chunks, least, {}, &SChunk::firstTrack);
    for (; chunk != table->chunks.end() && chunk->firstTrack < end; ++chunk) {
        if (chunk->firstTrack + chunk->count <= first)
            continue;
        const auto block = file.cache->Block(file, stretch, *chunk);
        const std::string_view bytes = std::string_view(*block).substr(chunk->offset, chunk->size);
        CGroupDecoder decoder(FormOf(*file.index, *chunk), bytes, static_cast<std::uint32_t>(table->times.size()));
        TakeChunk(decoder, table->times, *chunk, first, builders);
    }
}

}  // namespace

SGroupForm FormOf(const CStreamIndex &index, const SChunk &chunk)
{
    const unsigned size = index.ValueSizeOf(chunk.firstTrack);
    for (std::uint32_t i = 0; i < chunk.count; ++i) {
        if (size == 0 || index.ValueSizeOf(chunk.firstTrack + i) != size)
            throw XFault("is damaged: a signal has events that its type cannot have");
    }
    return {static_cast<std::uint8_t>(chunk.count), static_cast<std::uint8_t>(size), 0};
}

SLoadedTracks LoadTracks(const SStreamFile &file, const std::shared_ptr<CBlockCache> &cache, std::uint32_t first,
                         std::size_t count)
{
    const CStreamIndex &index = *file.index;
    CBuilders builders;
    builders.reserve(count);
    for (std::uint32_t track = first; track - first < count; ++track)
        builders.emplace_back(index.ValueSizeOf(track), index.Find(index.HandleOf(track))->events);
    const std::uint32_t last = first + static_cast<std::uint32_t>(count) - 1;
    for (std::size_t i = 0; i < index.Stretches().size(); ++i) {
        const SStretchEntry &stretch = index.Stretches()[i];
        if (stretch.lowTrack <= last && stretch.highTrack >= first)
            TakeStretch(file, i, first, builders);
    }
    SLoadedTracks loaded{first, {}};
    loaded.events.reserve(count);
    for (CScalarBuilder &builder : builders)
        loaded.events.push_back(builder.Finish(cache));
    return loaded;
}

}  // namespace Morvel
