// Benches in a simulation.
#pragma once

#include <string>

namespace tesk::vpi {

/// Applies the stimuli of a bench file, and its replays, to the design from now on. Faults are told with their place; a signal
/// that has one is left alone.
/// @param place  of what asked for it, for a file that cannot be read
/// @return false if there was a fault
bool ApplyBench(const std::string &path, const std::string &place);

/// The bench that the command line names with "+tesk=FILE", else the environment variable TESK_BENCH; empty for none.
std::string AskedBench();

}  // namespace tesk::vpi
