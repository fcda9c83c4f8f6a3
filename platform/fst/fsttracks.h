// The stores that are read together, each with the value that it has where the reading stands.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "platform/changes/presentvalues.h"
#include "platform/fst/fstblocks.h"
#include "platform/fst/fstchain.h"

namespace NTARN {

/// A store that is read.
struct SFstTrack {
    std::uint32_t store;
    std::uint64_t lastTime = 0;   ///< of its last change, in the file's own ticks
    std::uint64_t bytesLeft = 0;  ///< that may be unpacked
};

/// Where a block has changes of a store that is read.
struct SFstTrackStretch {
    std::uint32_t track;
    SFstStretch stretch;
};

class CFstTracks {
public:
    static constexpr std::uint32_t None = UINT32_MAX;

    /// @param blocks, stores  outlive this object
    CFstTracks(CFstBlocks &blocks, const std::vector<SFstStore> &stores);

    /// Has a store read. @return its number here, one for all calls
    std::uint32_t Add(std::uint32_t store);

    std::size_t Count() const { return m_tracks.size(); }
    SFstTrack &Track(std::size_t track) { return m_tracks[track]; }
    const SFstStore &Store(std::size_t track) const { return m_stores[m_tracks[track].store]; }
    tesk::CPresentValues &Values() { return m_values; }

    /// The stretches of a block that have changes of these stores; none if the block cannot be read.
    std::vector<SFstTrackStretch> StretchesIn(std::size_t block);
    /// Unpacks one of them. What cannot be read is noted, and the chain then is empty.
    void Unpack(std::size_t block, const SFstTrackStretch &stretch, CFstBuffer &chain);
    /// The next change of a chain.
    /// @param timeIndex  receives its time, by its place in `times`
    /// @throw XFstDamage
    SFstValue Next(std::size_t track, CFstChain &chain, const CFstTimes &times, std::uint64_t &timeIndex);
    /// The value that each of these stores has before its first change.
    /// @param chains  by number, those of the first block; empty where there is none
    std::vector<std::pair<std::uint32_t, SFstInitial>> Initial(const std::vector<SFstSpan> &chains);
    /// Takes a value. @return whether it counts as a change: one bit and a real have every value that is written, a bus
    /// those that are new to one of its elements
    bool Take(std::size_t track, const SFstValue &value);

private:
    bool TakePacked(std::span<std::uint8_t> positions, SFstSpan bits);
    bool TakeLetters(std::span<std::uint8_t> positions, SFstSpan letters, bool isPort);

    CFstBlocks &m_blocks;
    const std::vector<SFstStore> &m_stores;
    bool m_isBigEndian;
    std::uint64_t m_bytesLeft;  // of all changes, that may be unpacked
    std::vector<SFstTrack> m_tracks;
    std::vector<std::uint32_t> m_trackOf;  // by store
    tesk::CPresentValues m_values;         // by track
};

}  // namespace NTARN
