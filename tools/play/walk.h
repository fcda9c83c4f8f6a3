// Walks a stimulus from change to change.
#pragma once

#include <optional>
#include <vector>

#include "core/stimulus.h"
#include "tools/play/recorder.h"
#include "tools/writers/waveform.h"

/// Changes shown of a stimulus that has no end of its own and for which none was asked.
constexpr std::size_t DefaultChanges = 40;

struct SWalked {
    std::vector<std::vector<SChange>> changes;  ///< of each stimulus
    bool isCut = false;                         ///< there would be more, but for `DefaultChanges`
};

/// The changes of stimuli that belong together, such as the wires of a vector: up to and including the end, without one up to
/// the end of all, and if one of them has none `DefaultChanges` times. They are asked in step, time by time, since the wires
/// of a counter share one state; only those that answer for any time are asked for the beginning of what is shown at once. A
/// time that does not advance is stepped over by one tick. A value that is in force from the beginning on without a change, as
/// that of a random stimulus, is told there.
/// @param limit  the last time for which the stimuli have an answer that can be trusted
/// @param sink   of a single stimulus: takes changes as they come, so that there may be any number; those that are left are
///               in the answer. Empty keeps all
/// @throw CRefusal if there are more changes than a walk may hold or pass over
SWalked Walk(const std::vector<tesk::StimulusPtr> &stimuli, const tesk::SWalkTimes &times,
             std::optional<long long> limit = std::nullopt, const tesk::CChangeSink &sink = {});
