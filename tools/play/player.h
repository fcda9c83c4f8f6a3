// Plays a formula on a signal, whole or element by element.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/play/playedsignal.h"
#include "tools/play/recorder.h"

namespace tesk {

/// Takes some of the changes of a trace, in their order.
using CTraceSink = std::function<void(const STrace &part)>;

}  // namespace tesk

/// What a signal shows.
struct SPlayed {
    std::vector<STrace> traces;  ///< the signal itself, and below it its elements
    bool isCut = false;          ///< the stimulator has no end, and its first changes are shown
};

/// Plays a formula. One that refers to a file is taken apart down to the scalars, any other down to the elements of the signal.
/// The simulation run ends with it: what it loaded is let go. Warnings go to standard error.
/// @param sink  of a signal without elements: takes its changes as they come, see `Walk`
/// @throw CRefusal if the formula cannot be used
SPlayed PlayOnSignal(const std::string &formula, const SPlayedSignal &signal, long long resolution,
                     const tesk::SWalkTimes &times, const tesk::CTraceSink &sink = {});
