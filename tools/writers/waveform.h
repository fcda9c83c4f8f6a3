// What a walk over stimuli yields, for the writers.
#pragma once

#include <optional>
#include <string>
#include <vector>

/// From `ticks` on the signal has `value`; without one it is not driven.
struct SChange {
    long long ticks;
    std::optional<std::string> value;
};

/// The changes of one signal or of an element of one, by rising time. Elements stand behind what they are elements of.
struct STrace {
    std::string name = {};    ///< below its signal, such as "[7]"; empty for the signal itself
    std::string signal = {};  ///< name of the signal; may be empty where there is only one
    std::string type = {};    ///< type description; empty if no type is known
    bool isBus = false;       ///< never drawn as a level, however short the values are
    bool isCurve = false;     ///< values are decimal numbers, drawn as a curve
    std::vector<SChange> changes = {};

    bool IsElement() const { return !name.empty(); }
    /// May be empty.
    std::string FullName() const { return signal + name; }
    /// The full name, of a signal without a name "stimulus".
    std::string NameInFile() const { return (signal.empty() ? "stimulus" : signal) + name; }
};

struct SWaveform {
    std::string formula;
    long long resolution = 1000;         ///< femtoseconds per tick
    long long begin = 0;                 ///< ticks; the left end of a picture
    long long end = 0;                   ///< ticks; the right end, not before the last change
    std::optional<long long> mark = {};  ///< ticks; a time that a picture points at
    std::vector<STrace> traces;
};
