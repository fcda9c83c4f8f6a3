// Recorded signals as a waveform, to be drawn or written.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tools/writers/waveform.h"
#include "waveform/files/waveformfile.h"

namespace tesk {

/// A signal of an open file, and what it is called in a picture.
struct SRecordedSignal {
    IWaveformFile *file;
    SFileSignal signal;
    std::string name;
};

/// The stretch that is read of the files. Times are ticks of a resolution of its own, since files differ in theirs.
struct SRecordedWindow {
    long long resolution = 1000;  ///< femtoseconds per tick
    long long from = 0;
    long long until = 0;     ///< inclusive
    std::size_t points = 0;  ///< of the width of a picture; 0 if all changes are wanted
    bool isAnalog = false;   ///< vectors of bits are wanted as curves
};

/// What signals show from `from`, with the value in force there, to `until`: a trace each, in their order. An event that
/// changes nothing is no change. For a picture of so many points no more is kept than it shows, however much there is.
/// Signals that share their events are read once.
/// @throw CRefusal if there are more changes than may be held
std::vector<STrace> ReadRecorded(const std::vector<SRecordedSignal> &signals, const SRecordedWindow &window);

/// The same as a whole waveform. @param title  of a picture
SWaveform RecordedWaveform(const std::vector<SRecordedSignal> &signals, const SRecordedWindow &window,
                           const std::string &title);

}  // namespace tesk
