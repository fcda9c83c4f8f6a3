// A walk through an FST file in the order of time, a block at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <span>
#include <utility>
#include <vector>

#include "platform/changes/changedset.h"
#include "platform/changes/changewalk.h"
#include "platform/fst/fstevents.h"
#include "platform/fst/fsttracks.h"

namespace NTARN {

/// Whether the blocks of a file follow each other in time, as its head tells, so that one can be read behind the other.
bool AreFstBlocksInOrder(const SFstLayout &layout);

/// The chains of a block are unpacked together, and of each only the next change is looked at: it waits in a list that
/// belongs to its time. What cannot be read is left out, as where the events of a store are read as a whole.
class CFstWalk final : public tesk::IChangeWalk {
public:
    /// @param blocks, stores  outlive this object; the blocks are in order
    /// @param wanted          the store of each signal
    /// @param onDamage        called where something may have been left out
    CFstWalk(CFstBlocks &blocks, const std::vector<SFstStore> &stores, const SFstClock &clock,
             std::span<const std::uint32_t> wanted, std::function<void()> onDamage);

    bool PeekTime(long long &time) override;
    bool Next(long long &time, long long until) override;
    std::span<const std::uint32_t> GetChanged() const override { return m_changed; }
    const tesk::CElementValues &GetValues(std::size_t signal) override
    {
        return m_tracks.Values().Values(m_trackOf[signal]);
    }
    std::span<const std::uint8_t> GetPositions(std::size_t signal) override
    {
        return m_tracks.Values().Positions(m_trackOf[signal]);
    }

private:
    static constexpr std::uint32_t None = UINT32_MAX;

    // The changes of a store in the block. Neither is moved: a value may lie in its chain.
    struct SCursor {
        SCursor(std::uint32_t of, const SFstStore &store, CFstBuffer unpacked)
            : track(of), buffer(std::move(unpacked)), chain(buffer, store)
        {}

        std::uint32_t track;
        std::uint32_t next = None;  // in the list of its time
        CFstBuffer buffer;
        CFstChain chain;
        SFstValue value{};  // of the next change
    };

    bool FindBucket();
    bool LoadBlock();
    void FindInitial();
    void Queue(std::uint32_t cursor);
    void TakeInitial();
    void TakeBucket();
    void DropBucket();
    void Take(std::uint32_t track, const SFstValue &value);

    CFstBlocks &m_blocks;
    SFstClock m_clock;
    std::function<void()> m_onDamage;
    CFstTracks m_tracks;
    std::vector<std::uint32_t> m_trackOf;      // of each signal
    std::vector<std::uint32_t> m_firstSignal;  // of each track
    std::vector<std::uint32_t> m_nextSignal;   // of the same track
    tesk::CChangedSet m_marked;
    std::vector<std::uint32_t> m_changed;

    std::vector<std::pair<std::uint32_t, SFstInitial>> m_initial;  // of tracks, until they are told
    std::size_t m_nextBlock = 0;
    CFstBlocks::BlockPtr m_block;
    std::deque<SCursor> m_cursors;
    std::vector<std::uint32_t> m_buckets;  // of each time in the block the first cursor
    std::size_t m_bucket = 0;
    std::uint64_t m_fileTime = 0;  // of the last change, in the file's own ticks
};

}  // namespace NTARN
