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
    long long from = 0;              ///< where what is shown begins, not before that
    std::optional<long long> until;  ///< the last time that is shown; without one the end of the stimulators
};

/// Takes the changes of one signal as they come, some at a time, and leaves the vector to be filled again.
using CChangeSink = std::function<void(const std::vector<SChange> &changes)>;

/// Keeps the changes of signals within the times that are shown, of all together no more than may be held.
class CChangeRecorder {
public:
    /// What would do where there is too much.
    static constexpr const char *UsualAdvice = "give an earlier end with --until, or write a single signal as CSV";

    static constexpr std::size_t UsualMost = 2'000'000;

    explicit CChangeRecorder(const char *advice = UsualAdvice, std::size_t most = UsualMost)
        : m_advice(advice), m_most(most)
    {}

    /// Whether so many changes are kept that a sink should have them.
    bool IsFull() const;
    /// Gives all changes but the last to a sink, and keeps that one: what comes next is compared with it.
    void Drain(std::vector<SChange> &changes, const CChangeSink &sink);

    /// @param from  where what is shown of the signal begins: the last change before is the value in force there
    /// @throw CRefusal if that were more than may be held
    void Add(std::vector<SChange> &changes, SChange change, long long from);

    /// Takes the last change out again.
    void TakeBack(std::vector<SChange> &changes);

    /// The same changes once more. @throw CRefusal as `Add`
    std::vector<SChange> Copy(const std::vector<SChange> &changes);

private:
    void Count(const SChange &change);

    const char *m_advice;
    std::size_t m_most;
    std::size_t m_held = 0;  // changes of all signals
    std::size_t m_bytes = 0;
};

}  // namespace tesk
