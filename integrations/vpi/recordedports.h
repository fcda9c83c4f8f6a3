// The ports of a recorded scope, where the file tells directions.
#pragma once

#include <string>
#include <vector>

#include "waveform/files/waveformfile.h"

namespace tesk::vpi {

/// The names, below a scope of a file, of the ports of one direction that the scope itself has.
std::vector<std::string> PortsBelow(IWaveformFile &file, const std::string &scope, ESignalDirection direction);

}  // namespace tesk::vpi
