// Plays a formula on a signal, whole or element by element.
#pragma once

#include <string>
#include <vector>

#include "tools/play/playedsignal.h"
#include "tools/play/recorder.h"

/// What a signal shows.
struct SPlayed {
    std::vector<STrace> traces;  ///< the signal itself, and below it its elements
    bool isCut = false;          ///< the stimulator has no end, and its first changes are shown
};

/// Plays a formula. One that refers to a file is taken apart down to the scalars, any other down to the elements of the signal.
/// The simulation run ends with it: what it loaded is let go. Warnings go to standard error.
/// @throw CRefusal if the formula cannot be used
SPlayed PlayOnSignal(const std::string &formula, const SPlayedSignal &signal, long long resolution,
                     const tesk::SWalkTimes &times);
