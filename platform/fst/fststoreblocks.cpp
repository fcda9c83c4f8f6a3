#include "platform/fst/fststoreblocks.h"

#include <numeric>

namespace NTARN {

void CFstStoreBlocks::Add(std::size_t block, const CFstPositions &positions, std::size_t storeCount)
{
    for (std::size_t i = 0; i < positions.EntryCount(); ++i) {
        if (positions.StoreOf(i) < storeCount)
            m_entries.push_back({positions.StoreOf(i), static_cast<std::uint32_t>(block)});
    }
}

// A sort by counting, which keeps the order of the blocks.
void CFstStoreBlocks::End(std::size_t storeCount)
{
    m_begins.assign(storeCount + 2, 0);
    for (const SEntry &entry : m_entries)
        ++m_begins[entry.store + 2];
    std::partial_sum(m_begins.begin(), m_begins.end(), m_begins.begin());
    m_blocks.resize(m_entries.size());
    for (const SEntry &entry : m_entries)
        m_blocks[m_begins[entry.store + 1]++] = entry.block;
    m_entries = {};
}

}  // namespace NTARN
