// Signals of the design compared with a recorded scope while the simulation runs.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/bench/bench.h"
#include "waveform/files/waveformfile.h"

namespace tesk::vpi {

/// What a replay compares, and how.
struct SRunComparison {
    SBenchReplay replay;
    std::string place;                ///< for messages
    long long tolerance = 0;          ///< ticks
    long long from = 0;               ///< ticks; what happens before is not compared
    std::optional<long long> until;   ///< ticks; the simulation is meant to end there
    std::vector<std::string> driven;  ///< names below the scope that the replay drives; they are not compared
};

/// Compares from now on: what is recorded at the beginning of the file is expected now. The first difference of each signal is
/// told when it is known; the end tells how many signals differ, and if one does the simulator's status is 1.
///
/// Signals are those of the patterns; without patterns the outputs that the file tells of, else those that the design has.
/// @return false if there is nothing to compare
bool StartRunComparison(const std::shared_ptr<IWaveformFile> &file, const SRunComparison &asked);

}  // namespace tesk::vpi
