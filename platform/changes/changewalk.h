// The changes of a waveform file by rising time, as its reader comes upon them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace tesk {

/// The raw value of each element of a signal; none of one that has no event yet.
using CElementValues = std::vector<std::optional<std::uint64_t>>;

/// Goes through a file from time to time. Signals are named by their places among those that the walk was made for.
class IChangeWalk {
public:
    /// Stands for the position of an element that has no event yet.
    static constexpr std::uint8_t NoPosition = 255;

    virtual ~IChangeWalk() = default;
    /// Tells when signals change next, at the earliest: nothing changes in front of that. The walk stays where it is.
    /// @return false if nothing follows
    virtual bool PeekTime(long long &time) = 0;
    /// Goes to the next time at which signals change. Times are in file ticks.
    /// @param until  no change behind it is met; the values stay those of that time
    /// @return false if none follows up to there
    virtual bool Next(long long &time, long long until) = 0;
    /// The signals that change then, each once, in rising order. Lives until the walk goes on.
    virtual std::span<const std::uint32_t> GetChanged() const = 0;
    /// What a signal has now.
    virtual const CElementValues &GetValues(std::size_t signal) = 0;
    /// The same of a signal whose elements are of an enumeration of few literals, as positions in it; empty for others.
    /// Lives until the walk goes on.
    virtual std::span<const std::uint8_t> GetPositions(std::size_t signal) = 0;
};

/// A stretch of time, in file ticks. Both ends belong to it.
struct SStretch {
    std::optional<long long> from;
    std::optional<long long> until;

    bool IsWhole() const { return !from && !until; }
    bool Has(long long time) const { return (!from || time >= *from) && (!until || time <= *until); }
};

/// At how many times a signal changes.
struct SChangeCount {
    long long count = 0;
    long long first = 0;  ///< file ticks; without changes nothing
    long long last = 0;

    /// @param time  not before the last one
    void Add(long long time)
    {
        if (count > 0 && time == last)
            return;
        first = count == 0 ? time : first;
        last = time;
        ++count;
    }
};

/// Called now and then with what part of the work is done.
using FProgress = std::function<void(long long done, long long all)>;

/// A signal by its elements: their handles are consecutive.
struct SElements {
    long long first;
    long long count;
};

/// May be implemented by a reader beside its interface. None of these reads the events of a signal as a whole.
class IChangeSource {
public:
    /// A number that elements have in common only if they share their events.
    virtual long long IdentifyChanges(long long element) = 0;
    /// @return null if the signals, or the file, must be read in another way
    virtual std::unique_ptr<IChangeWalk> WalkChanges(std::span<const SElements> signals) = 0;
    /// @return for each signal; nothing as `WalkChanges`
    virtual std::optional<std::vector<SChangeCount>>
    CountChanges(std::span<const SElements> signals, const SStretch &stretch, const FProgress &progress) = 0;

protected:
    ~IChangeSource() = default;
};

}  // namespace tesk
