// Which blocks have changes of which store.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/fst/fstblock.h"

namespace NTARN {

/// Many blocks have nothing for most stores; to ask each of them for each store would take their product.
class CFstStoreBlocks {
public:
    /// Takes the blocks in rising order, then `End`.
    void Add(std::size_t block, const CFstPositions &positions, std::size_t storeCount);
    void End(std::size_t storeCount);

    /// Whether `End` was called.
    bool IsKnown() const { return !m_begins.empty(); }
    std::span<const std::uint32_t> BlocksOf(std::uint32_t store) const
    {
        return std::span(m_blocks).subspan(m_begins[store], m_begins[store + 1] - m_begins[store]);
    }

private:
    struct SEntry {
        std::uint32_t store;
        std::uint32_t block;
    };

    std::vector<SEntry> m_entries;  // until the end
    std::vector<std::size_t> m_begins;
    std::vector<std::uint32_t> m_blocks;
};

}  // namespace NTARN
