// Walks stimuli from change to change.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "core/stimulus.h"
#include "tools/play/recorder.h"
#include "tools/writers/waveform.h"

/// Changes shown of a stimulus that has no end of its own and for which none was asked.
constexpr std::size_t DefaultChanges = 40;

namespace tesk {

/// Stimuli that belong together, such as the wires of a vector, and when they are applied.
struct SWalkGroup {
    std::span<const StimulusPtr> stimuli;
    long long begin = 0;             ///< ticks
    std::optional<long long> limit;  ///< the last time for which they have an answer that can be trusted
};

/// What is shown of a walk, in ticks.
struct SWalkStretch {
    long long from = 0;              ///< a group that begins later is shown from there on
    std::optional<long long> until;  ///< the last time that is shown
    long long ended = 0;             ///< where, without `until`, something ends that is shown but not walked
};

struct SWalked {
    std::vector<std::vector<SChange>> changes;  ///< of each stimulus, group behind group
    bool isCut = false;                         ///< there would be more, but for `DefaultChanges`
    std::optional<long long> end;               ///< where the walk has left stimuli that go on
};

/// The changes of groups of stimuli, all in step, time by time: whatever some of them share, such as the count of a counter,
/// goes on for all at once. Without an end the walk goes a little behind that of the last stimulus that has one; where none
/// has, to the time at which a group has changed `DefaultChanges` times. Stimuli that answer for any time are asked for the beginning of
/// what is shown at once, the others for all that comes before. A time that does not advance is stepped over by one tick. A
/// value that is in force from the beginning on without a change, as that of a random stimulus, is told there.
/// @param sink  of a single stimulus: takes changes as they come, so that there may be any number; those that are left are
///              in the answer. Empty keeps all
/// @throw CRefusal if there are more changes than a walk may hold or pass over
SWalked Walk(std::span<const SWalkGroup> groups, const SWalkStretch &stretch, const CChangeSink &sink = {});

}  // namespace tesk
