// The values of an FST file, read store by store as they are asked for.
#pragma once

#include <cstdint>
#include <deque>
#include <vector>

#include "platform/fst/fstblocks.h"
#include "platform/fst/fstclasses.h"
#include "platform/fst/fstevents.h"
#include "platform/fst/fststoreblocks.h"

namespace NTARN {

class CFstValues {
public:
    /// @param blocks, stores  outlive this object
    CFstValues(CFstBlocks &blocks, const std::vector<SFstStore> &stores, const SFstClock &clock);

    /// The events of a store, read on first use. Stores that the writer found to change alike share them. What cannot be
    /// read is left out; nothing is raised.
    const SFstEvents &Events(std::uint32_t store);
    /// A number that stores have in common if they share their events, which are not read for that.
    std::uint32_t Identify(std::uint32_t store);
    /// Whether a store has events, as far as can be told without reading them.
    bool MayHaveEvents(std::uint32_t store);

private:
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
    // Events that stores share.
    struct SShared {
        bool isRead = false;
        SFstEvents events;
    };
    static constexpr std::uint32_t None = UINT32_MAX;

    std::uint32_t Share(std::uint32_t store);
    SFstEvents Load(std::uint32_t store, const std::vector<SSource> &sources);
    std::vector<SSource> Sources(std::uint32_t store);
    void AddSource(std::size_t block, std::uint32_t store, std::vector<SSource> &sources);
    std::vector<SPiece> Pieces(const std::vector<SSource> &sources);
    void AddPieces(CFstEventMaker &maker, const std::vector<SPiece> &pieces);
    void FindBlocks();

    CFstBlocks &m_blocks;
    const std::vector<SFstStore> &m_stores;
    SFstClock m_clock;
    std::uint64_t m_eventsLeft;
    std::uint64_t m_bytesLeft;              // of changes, that may be unpacked
    CFstClasses m_classes;                  // from the second store on
    std::uint32_t m_firstStore = None;      // whose events were asked for
    std::vector<std::uint32_t> m_sharedOf;  // each class's; None before it is asked for
    std::deque<SShared> m_shared;           // stay where they are
    CFstStoreBlocks m_storeBlocks;          // from the second store on
};

}  // namespace NTARN
