// The values of an FST file, read store by store as they are asked for.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "platform/fst/fstevents.h"

namespace NTARN {

class CFstValues {
public:
    /// @param file, layout, stores  outlive this object
    CFstValues(CFstFile &file, const SFstLayout &layout, const std::vector<SFstStore> &stores, const SFstClock &clock);

    /// The events of a store, read on first use. What cannot be read is left out; nothing is raised.
    const SFstEvents &Events(std::uint32_t store);
    /// The time of the first block that could not be read as a whole, in the file's own ticks.
    const std::optional<std::uint64_t> &FirstDamage() const { return m_firstDamage; }

private:
    using BlockPtr = std::shared_ptr<const CFstBlock>;

    // What one block has for one store.
    struct SPiece {
        std::size_t block;
        CFstBuffer chain;
    };

    SFstEvents Load(const SFstStore &store, const std::vector<SPiece> &pieces);
    std::vector<SPiece> Pieces(std::uint32_t store);
    void AddPieces(CFstEventMaker &maker, const std::vector<SPiece> &pieces);
    SFstInitial Initial(const SFstStore &store, const std::vector<SPiece> &pieces);
    bool IsUntold(SFstSpan letters, const SFstStore &store) const;
    const CFstBuffer &Frame(const CFstBlock &block);
    BlockPtr Block(std::size_t index);
    void NoteDamage(std::size_t block);

    CFstFile &m_file;
    const SFstLayout &m_layout;
    const std::vector<SFstStore> &m_stores;
    SFstClock m_clock;
    std::vector<BlockPtr> m_blocks;     // those that are kept
    std::vector<bool> m_isUnreadable;   // of each block
    std::size_t m_memory = 0;           // of the blocks that are kept
    std::optional<CFstBuffer> m_frame;  // the first block's
    std::unordered_map<std::uint32_t, SFstEvents> m_events;
    std::optional<std::uint64_t> m_firstDamage;
};

}  // namespace NTARN
