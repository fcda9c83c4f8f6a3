// The traces of a waveform as the variables of a dump.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/files/vcdname.h"
#include "tools/writers/valuekind.h"
#include "tools/writers/waveform.h"

namespace tesk {

struct SDumpedTrace {
    const STrace *trace;
    SValueKind form;
    SVcdName name;      ///< one without scopes stands in a scope called tesk
    std::string range;  ///< "[7:0]"; empty for one bit and for what is none
};

/// All that a dump shows: the elements of a bus of bits are in its vector, any other bus is shown with them.
std::vector<SDumpedTrace> DumpedTraces(const SWaveform &waveform);

/// A change of a dumped trace.
struct SDumpedChange {
    std::uint32_t trace;
    std::uint32_t change;
};

/// All changes by rising time, those of one time in the order of the traces.
std::vector<SDumpedChange> ChangesByTime(const std::vector<SDumpedTrace> &traces);

}  // namespace tesk
