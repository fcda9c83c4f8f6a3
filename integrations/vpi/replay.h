// A recorded scope played into the design.
#pragma once

#include <optional>
#include <string>

#include "tools/bench/bench.h"

namespace tesk::vpi {

/// Times of a replay, in ticks of the simulation.
struct SReplayTimes {
    long long tolerance = 0;         ///< a recorded change may come so much earlier or later
    long long from = 0;              ///< what happens before is not compared
    std::optional<long long> until;  ///< when the simulation is meant to end
};

/// Drives signals of the design from now on as a waveform file has them from its beginning on, and compares others with it.
/// Signals that cannot be driven or compared are told, and left alone. Where the replay names none, the ports of its scope are
/// taken, as the file tells their directions, else as the design does.
/// @param place  for messages
/// @throw CRefusal if there is nothing to drive or to compare
void StartReplay(const SBenchReplay &replay, const SReplayTimes &times, const std::string &place);

}  // namespace tesk::vpi
