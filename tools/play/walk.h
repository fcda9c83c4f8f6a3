// Walks a stimulus from change to change.
#pragma once

#include <optional>
#include <vector>

#include "core/stimulus.h"
#include "tools/writers/waveform.h"

/// Changes shown of a stimulus that has no end of its own and for which none was asked.
constexpr std::size_t DefaultChanges = 40;

/// The changes of stimuli that belong together, such as the wires of a vector: from the first on, up to and including
/// `until`, without one up to the end of all, and if one of them has none the first `DefaultChanges` times. They are asked
/// in step, time by time, since the wires of a counter share one state. A time that does not advance is stepped over by
/// one tick. A value that is in force from `begin` on without a change, as that of a random stimulus, is told there.
/// @param begin  ticks; when the stimulators are applied
/// @return for each stimulus its changes
/// @throw CRefusal if there are more changes than a walk may hold
std::vector<std::vector<SChange>> Walk(const std::vector<tesk::StimulusPtr> &stimuli, long long begin,
                                       std::optional<long long> until);
