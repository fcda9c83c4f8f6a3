// A walk through an event stream in the order of time, a stretch at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/changes/changedset.h"
#include "platform/changes/changewalk.h"
#include "platform/stream/groupevents.h"
#include "platform/stream/morvelindex.h"
#include "platform/stream/stretchtable.h"

namespace Morvel {

/// Whether the stretches of a stream follow each other in time, as those of one that was written by rising time, so that few
/// of them are open together. It needs a file that has stretches.
bool AreStretchesInOrder(const CStreamIndex &index);

/// The chunks of a stretch are unpacked together, and of each only the next event is looked at: it waits in a list that
/// belongs to its time.
class CStreamWalk final : public tesk::IChangeWalk {
public:
    enum class EValues { Kept, Dropped };

    /// @param file     whose stretches are in order
    /// @param signals  handles of scalars, each with all of its elements
    /// @param values   if they are dropped, nobody asks for them
    /// @throw XFault if a signal has events that its type cannot have; so do all operations that go on, and where a block is
    ///        damaged
    CStreamWalk(SStreamFile file, std::span<const tesk::SElements> signals, EValues values = EValues::Kept);
    ~CStreamWalk() override;

    bool PeekTime(long long &time) override;
    bool Next(long long &time, long long until) override;
    std::span<const std::uint32_t> GetChanged() const override { return m_changed; }
    const tesk::CElementValues &GetValues(std::size_t signal) override;
    std::span<const std::uint8_t> GetPositions(std::size_t signal) override;

private:
    class CStretch;

    static constexpr std::uint32_t None = UINT32_MAX;

    struct SSignal {
        std::size_t begin;  // of its positions
        std::size_t count;
        bool hasPositions;
    };
    // An element that shows the events of a track.
    struct SUse {
        std::uint32_t signal;
        std::uint32_t element;
        std::uint32_t next;  // of the same track; `None` for the last
    };

    void AddSignal(const tesk::SElements &elements);
    void FindRuns();
    bool HasPositions(const SSignalEntry &element) const;
    void Take(const SChunk &chunk, const CGroupDecoder &event);
    bool TakeWord(const SChunk &chunk, const CGroupDecoder &event);

    SStreamFile m_file;
    EValues m_keeps;
    std::vector<SSignal> m_signals;
    std::vector<std::uint32_t> m_firstUse;  // of each track
    std::vector<SUse> m_uses;
    std::vector<std::uint8_t> m_runs;  // of each track: so many go together as a word; at most `MaxGroup`
    std::vector<std::uint8_t> m_positions;
    std::vector<tesk::CElementValues> m_values;  // of signals without positions, and of those that were asked for
    tesk::CChangedSet m_marked;
    std::vector<std::uint32_t> m_changed;

    std::size_t m_nextStretch = 0;
    std::vector<std::unique_ptr<CStretch>> m_open;
};

}  // namespace Morvel
