// The values of an FST file, read store by store as they are asked for.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/fst/fstevents.h"
#include "platform/fst/fstlimits.h"
#include "platform/fst/fststoreblocks.h"

namespace NTARN {

class CFstValues {
public:
    /// @param file, layout, stores  outlive this object
    CFstValues(CFstFile &file, const SFstLayout &layout, const std::vector<SFstStore> &stores, const SFstClock &clock);

    /// The events of a store, read on first use. Stores that the writer found to change alike share them. What cannot be
    /// read is left out; nothing is raised.
    const SFstEvents &Events(std::uint32_t store);
    /// The time of the first block that could not be read as a whole, in the file's own ticks.
    const std::optional<std::uint64_t> &FirstDamage() const { return m_firstDamage; }
    /// Whether something is left out since there is more of it than a file of its size can have.
    bool IsTooMuch() const { return m_isTooMuch; }

private:
    using BlockPtr = std::shared_ptr<const CFstBlock>;

    // Where a block has changes of a store.
    struct SSource {
        std::size_t block;
        SFstStretch stretch;
    };
    // What it has there.
    struct SPiece {
        std::size_t block;
        CFstBuffer chain;
    };

    SFstEvents Load(std::uint32_t store, const std::vector<SSource> &sources);
    std::vector<SSource> Sources(std::uint32_t store);
    void AddSource(std::size_t block, std::uint32_t store, std::vector<SSource> &sources);
    std::string Identity(std::uint32_t store, const std::vector<SSource> &sources);
    std::vector<SPiece> Pieces(const std::vector<SSource> &sources);
    void AddPieces(CFstEventMaker &maker, const std::vector<SPiece> &pieces);
    SFstInitial Initial(const SFstStore &store, const std::vector<SPiece> &pieces);
    SFstSpan FrameLetters(const SFstStore &store);
    bool IsUntold(SFstSpan letters, const SFstStore &store) const;
    const CFstBuffer &Frame();
    BlockPtr Block(std::size_t index);
    BlockPtr ReadBlock(std::size_t index);
    void FindBlocks();
    void NoteDamage(std::size_t block);
    void NoteTooMuch(std::size_t block);

    CFstFile &m_file;
    const SFstLayout &m_layout;
    const std::vector<SFstStore> &m_stores;
    SFstClock m_clock;
    SFstLimits m_limits;
    std::vector<BlockPtr> m_blocks;    // those that are kept
    std::vector<bool> m_isUnreadable;  // of each block
    std::vector<bool> m_isCounted;     // of each block: its times are taken off those that there may be
    std::size_t m_memory = 0;          // of the blocks that are kept
    std::uint64_t m_timesLeft;
    std::uint64_t m_eventsLeft;
    std::uint64_t m_bytesLeft;                             // of changes
    std::optional<CFstBuffer> m_frame;                     // the first block's
    std::vector<const SFstEvents *> m_eventsOf;            // each store's; null before it is asked for
    std::unordered_map<std::string, SFstEvents> m_events;  // by identity
    std::size_t m_askedFor = 0;                            // stores
    CFstStoreBlocks m_storeBlocks;                         // from the second store on
    std::optional<std::uint64_t> m_firstDamage;
    bool m_isTooMuch = false;
};

}  // namespace NTARN
