// A waveform file of any kind: what stimuli, splitters and tools read of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/changes/changewalk.h"
#include "platform/kestrin.h"
#include "platform/types/direction.h"

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

/// Walks the events of up to 64 neighbouring elements together, by rising time.
class IElementsWalk {
public:
    virtual ~IElementsWalk() = default;
    /// Goes to the next time at which one of them has an event.
    /// @param time     file ticks
    /// @param changed  bit i is set if the element i, counted from 0, has one then
    /// @return false at the end
    virtual bool Next(long long &time, std::uint64_t &changed) = 0;
    /// The raw value of an element that had an event at the time of the last call of `Next`.
    virtual std::uint64_t Value(unsigned element) const = 0;
};

/// A scalar, or a one-dimensional array of scalars. Records and other arrays appear as the signals in them.
struct SFileSignal {
    std::string path;
    Kestrin::KTypeInfo type;
    long long firstElement;  ///< elements have consecutive handles, left bound first
    long long elementCount;
    ESignalDirection direction = ESignalDirection::Unknown;
};

/// Whether its elements are of an enumeration.
bool IsOfEnumeration(const SFileSignal &signal);

/// Their handles.
std::vector<SElements> ElementsOf(const std::vector<SFileSignal> &signals);

/// An open file. Any operation may raise what the reader of the file raises.
class IWaveformFile {
public:
    virtual ~IWaveformFile() = default;
    /// Femtoseconds per file tick.
    virtual long long GetResolution() = 0;
    /// File ticks. Where only the values tell, as in a VCD, they are read for it.
    virtual long long GetEndTime() = 0;
    /// The same if it is known already; behind the last change of a walk it is.
    virtual std::optional<long long> FindEndTime() { return GetEndTime(); }

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
    /// As `Walk`, of elements that belong to one signal.
    /// @param count  1 to 64
    /// @param all    elements of the signal: the more there are, the less is kept of each
    virtual std::unique_ptr<IElementsWalk> WalkTogether(long long first, std::size_t count, std::size_t all);

    /// A walk over the changes of many signals by rising time, as the reader of the file comes upon them. It must not
    /// outlive the file. @return null if the changes must be merged from walks over the elements
    virtual std::unique_ptr<IChangeWalk> WalkChanges(const std::vector<SFileSignal> &) { return nullptr; }
    /// Counts the times at which each signal, or an element of it, has an event. @return nothing as `WalkChanges`
    virtual std::optional<std::vector<SChangeCount>> CountChanges(const std::vector<SFileSignal> &, const SStretch &,
                                                                  const FProgress &)
    {
        return std::nullopt;
    }
    /// About what `GetEndTime` answers, at once: to tell how far a walk is.
    virtual long long EstimateEndTime() { return GetEndTime(); }
};

}  // namespace tesk
