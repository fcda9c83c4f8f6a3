// The signals of a record in the design, be it that a bus of the one is single bits in the other.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <vpi_user.h>

#include "tools/commandline.h"
#include "waveform/files/waveformfile.h"

namespace tesk::vpi {

/// A recorded signal, and its name in the design.
struct SRecorded {
    std::size_t signal;  ///< its place in the file
    std::string name;
};

/// A bit of the design, and where it is recorded. Both are counted from the left.
struct SMatchedBit {
    std::size_t signal;
    std::size_t element;
    std::size_t bit;
};

/// A signal of the design.
struct SMatch {
    vpiHandle object;
    std::size_t signal;             ///< the recorded one, if it is one as a whole
    std::vector<SMatchedBit> bits;  ///< else those that are recorded, by rising `bit`
};

/// Whether what has a name is a port, or a bit of it, or the port is a bit of that.
bool IsOfPort(std::string_view name, std::string_view port);
/// Whether a name is like a pattern, or that of the bus to whose bit it belongs.
bool IsLikePattern(std::string_view name, std::string_view glob);

/// Finds recorded signals in the design. Bits "v[1]", "v[0]" may be a vector there, and a bus may be the signals "v[1]", "v[0]".
/// @param refuse  called for each that is not there
std::vector<SMatch> MatchRecord(IWaveformFile &file, const std::vector<SRecorded> &recorded,
                                const std::function<void(const CRefusal &)> &refuse);

}  // namespace tesk::vpi
