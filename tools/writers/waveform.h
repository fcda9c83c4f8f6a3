// What a walk over a stimulus yields, for the writers.
#pragma once

#include <optional>
#include <string>
#include <vector>

/// From `ticks` on the signal has `value`; without one it is not driven.
struct SChange {
    long long ticks;
    std::optional<std::string> value;
};

/// The changes of one signal, by rising time.
struct STrace {
    std::string name;  ///< may be empty
    std::vector<SChange> changes;
};

struct SWaveform {
    std::string formula;
    long long resolution = 1000;  ///< femtoseconds per tick
    long long begin = 0;          ///< ticks; the left end of a picture
    long long end = 0;            ///< ticks; the right end, not before the last change
    std::vector<STrace> traces;
};
