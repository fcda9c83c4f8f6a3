// A recorded scope played into the design.
#pragma once

#include <string>

#include "tools/bench/bench.h"

namespace tesk::vpi {

/// Drives signals of the design from now on as a waveform file has them from its beginning on. Signals that cannot be driven
/// are told, and left alone.
/// @param place  for messages
/// @throw CRefusal if nothing can be driven
void StartReplay(const SBenchReplay &replay, const std::string &place);

}  // namespace tesk::vpi
