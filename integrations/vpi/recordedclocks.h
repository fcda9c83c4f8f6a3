// Which signals of a recorded run are clocks.
#pragma once

#include <vector>

#include "waveform/files/waveformfile.h"

namespace tesk::vpi {

/// Whether each of some signals of a file is a clock: a scalar that changes at even intervals, rise and fall each their own, and
/// not only along with a faster one. What is looked at is the beginning of the file.
std::vector<bool> FindClocks(IWaveformFile &file, const std::vector<SFileSignal> &signals);

}  // namespace tesk::vpi
