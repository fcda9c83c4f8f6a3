#include "platform/stream/streamcache.h"

namespace Morvel {

std::shared_ptr<const SStretchTable> CStreamCache::Table(const SStreamFile &file, std::size_t stretch)
{
    if (auto known = m_tables.Find(stretch))
        return known;
    const SStretchEntry &entry = file.index->Stretches()[stretch];
    const std::string bytes = file.ReadPack(entry.table);
    auto table = std::make_shared<SStretchTable>(ReadStretchTable(bytes, entry, file.index->BlocksOf(entry)));
    m_tables.Keep(stretch, table, table->MemorySize());
    return table;
}

std::shared_ptr<const std::string> CStreamCache::Block(const SStreamFile &file, std::size_t stretch,
                                                       const SChunk &chunk)
{
    const SStretchEntry &entry = file.index->Stretches()[stretch];
    const std::uint64_t number = std::uint64_t{entry.firstBlock} + chunk.block;
    if (auto known = m_blocks.Find(number))
        return known;
    auto block = std::make_shared<const std::string>(file.ReadPack(file.index->BlocksOf(entry)[chunk.block]));
    m_blocks.Keep(number, block, block->size());
    return block;
}

}  // namespace Morvel
