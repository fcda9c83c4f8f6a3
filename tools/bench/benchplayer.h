// What the signals of a bench show.
#pragma once

#include <optional>

#include "tools/bench/bench.h"
#include "tools/writers/waveform.h"

namespace tesk {

/// The stretch of a bench that is shown, in ticks.
struct SBenchStretch {
    long long from = 0;
    std::optional<long long> until;  ///< that of the bench where it is not told
};

/// Plays all signals of a bench. Without an end it is when the last stimulator ends that has one; where none has, the first
/// changes are shown, which a line on standard error tells. Files that several formulas name are opened once.
/// @throw CRefusal if a formula cannot be used
SWaveform PlayBench(const SBench &bench, const SBenchStretch &stretch);

}  // namespace tesk
