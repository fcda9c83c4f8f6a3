// A waveform file of any kind: what stimuli, splitters and tools read of it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/kestrin.h"

class ISignal;

namespace tesk {

/// Walks the events of one scalar element by rising time. Of several events at one time only the last is met.
class IElementWalk {
public:
    virtual ~IElementWalk() = default;
    /// @param time   file ticks
    /// @param value  the raw value: a position in an enumeration, an integer, or the bits of a double
    /// @return false at the end
    virtual bool Next(long long &time, std::uint64_t &value) = 0;
};

/// A scalar, or a one-dimensional array of scalars. Records and other arrays appear as the signals in them.
struct SFileSignal {
    std::string path;
    Kestrin::KTypeInfo type;
    long long firstElement;  ///< elements have consecutive handles, left bound first
    long long elementCount;
};

/// An open file. Any operation may raise what the reader of the file raises.
class IWaveformFile {
public:
    virtual ~IWaveformFile() = default;
    /// Femtoseconds per file tick.
    virtual long long GetResolution() = 0;
    /// File ticks.
    virtual long long GetEndTime() = 0;

    /// Finds what a formula names: a signal, or a part of one, in any letter case. @return its handle
    virtual std::optional<int> FindSignal(const char *name) = 0;
    /// Makes a signal of the type that the file gives to a handle.
    /// @param whole  of the signal to which the handle belongs, where a signal and its first element share one
    /// @return negative on failure
    virtual long MakeSignal(int handle, bool whole, ISignal **signal) = 0;

    /// All signals, listed when first asked for.
    virtual const std::vector<SFileSignal> &GetSignals() = 0;
    /// A number that elements have in common if they share their events, as the aliases of one signal do.
    virtual long long IdentifyEvents(long long element) = 0;
    /// @return a walk that must not outlive the file; null if the events cannot be read, which the log tells
    virtual std::unique_ptr<IElementWalk> Walk(long long element) = 0;
};

}  // namespace tesk
