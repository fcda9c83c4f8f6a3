// The check of a bench: each formula made into stimuli, none played.
#pragma once

#include <vector>

#include "tools/bench/bench.h"

namespace tesk {

/// Makes the stimuli of each signal and adds why one is refused, where nothing of its formula was found to be wrong.
/// @param faults  of the bench, in the order of the file; stays so
void CheckBenchStimuli(const SBench &bench, std::vector<SBenchFault> &faults);

}  // namespace tesk
