#include "integrations/vpi/recordedports.h"

#include <optional>

#include "tools/compare/scopemap.h"

namespace tesk::vpi {

std::vector<std::string> PortsBelow(IWaveformFile &file, const std::string &scope, ESignalDirection direction)
{
    std::vector<std::string> ports;
    for (const SFileSignal &signal : file.GetSignals()) {
        const auto name = signal.direction == direction ? NameBelow(signal.path, scope) : std::nullopt;
        if (name && !name->empty() && name->find('.') == name->npos)
            ports.emplace_back(*name);
    }
    return ports;
}

}  // namespace tesk::vpi
