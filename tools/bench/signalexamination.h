// What is found in the formula of one signal of a bench.
#pragma once

#include <vector>

#include "tools/bench/bench.h"

namespace tesk {

/// Examines the formula of a signal and adds what is found, at its place and with its name. A signal without a type that
/// replays a recorded one gets that one's.
void ExamineBenchSignal(const SBench &bench, SBenchSignal &signal, std::vector<SBenchFault> &faults);

}  // namespace tesk
