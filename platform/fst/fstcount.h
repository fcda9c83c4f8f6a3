// How often the stores of an FST file change.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/changes/changewalk.h"
#include "platform/fst/fstevents.h"
#include "platform/fst/fsttracks.h"

namespace NTARN {

/// Counts the times at which stores change, store by store in each block.
class CFstCounter {
public:
    /// @param blocks, stores, stretch  outlive this object
    CFstCounter(CFstBlocks &blocks, const std::vector<SFstStore> &stores, const SFstClock &clock,
                const tesk::SStretch &stretch)
        : m_blocks(blocks), m_clock(clock), m_stretch(stretch), m_tracks(blocks, stores)
    {}

    /// Has a store counted. Any number of times.
    void Add(std::uint32_t store) { m_tracks.Add(store); }
    /// Once, behind all of `Add`.
    void Count(const tesk::FProgress &progress);
    /// @param store  that was added
    const tesk::SChangeCount &CountOf(std::uint32_t store) { return m_counts[m_tracks.Add(store)]; }

private:
    void CountBlock(std::size_t block, const tesk::FProgress &progress);
    std::vector<CFstBuffer> UnpackAll(const std::vector<SFstTrackStretch> &stretches);
    void CountInitial(const std::vector<SFstTrackStretch> &stretches, const std::vector<CFstBuffer> &chains);
    void CountChain(std::size_t block, std::uint32_t track, SFstSpan bytes);
    void Take(std::uint32_t track, std::uint64_t fileTime, const SFstValue &value);

    CFstBlocks &m_blocks;
    SFstClock m_clock;
    const tesk::SStretch &m_stretch;
    CFstTracks m_tracks;
    std::vector<tesk::SChangeCount> m_counts;  // by track
};

}  // namespace NTARN
