// What a walk keeps of the changes that it meets.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "tools/writers/waveform.h"

namespace tesk {

/// When a signal is played and shown. Times are ticks.
struct SWalkTimes {
    long long begin = 0;             ///< when the stimulators are applied
    long long from = 0;              ///< where what is shown begins
    std::optional<long long> until;  ///< the last time that is shown; without one the end of the stimulators
};

/// Takes the changes of one signal as they come, some at a time, and leaves the vector to be filled again.
using CChangeSink = std::function<void(const std::vector<SChange> &changes)>;

/// Keeps the changes of one signal within the times that are shown. The last of those before is the value in force there.
class CChangeRecorder {
public:
    explicit CChangeRecorder(const SWalkTimes &times) : m_from(times.from) {}

    /// Whether so many changes are kept that a sink should have them.
    bool IsFull() const;
    /// Gives all changes but the last to a sink, and keeps that one: what comes next is compared with it.
    void Drain(std::vector<SChange> &changes, const CChangeSink &sink);

    /// @throw CRefusal if that were more than may be held
    void Add(std::vector<SChange> &changes, SChange change);

private:
    long long m_from;
    std::size_t m_held = 0;  // changes of all signals
    std::size_t m_bytes = 0;
};

}  // namespace tesk
