// Plays a formula on a signal, whole or element by element.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/play/playedsignal.h"

/// What the signal shows: itself, and below it its elements. A formula that refers to a file is taken apart down to the
/// scalars, any other down to the elements of the signal. The simulation run ends with it: what it loaded is let go.
/// @param start, until  ticks; as in `Walk`
/// @throw CRefusal if the formula cannot be used
std::vector<STrace> PlayOnSignal(const std::string &formula, const SPlayedSignal &signal, long long start,
                                 long long resolution, std::optional<long long> until);
