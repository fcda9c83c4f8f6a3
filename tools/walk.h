// Walks a stimulus from change to change. Internal.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "core/stimulus.h"
#include "tools/waveform.h"

struct SDestroyStimulus {
    void operator()(IStimulus *stimulus) const { stimulus->Destroy(); }
};
using StimulusPtr = std::unique_ptr<IStimulus, SDestroyStimulus>;

/// Changes shown of a stimulus that has no end of its own and for which none was asked.
constexpr std::size_t DefaultChanges = 40;

/// The changes from the stimulus's first on: up to and including `until`, without one up to the stimulus's own end,
/// and if it has none the first `DefaultChanges`. A time that does not advance is stepped over by one tick.
/// @throw CRefusal if there are more changes than a walk may hold
std::vector<SChange> Walk(IStimulus &stimulus, std::optional<long long> until);
