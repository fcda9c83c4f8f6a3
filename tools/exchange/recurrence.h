// Where the stimulator of a formula ends, or how it goes on for ever.
#pragma once

#include <optional>
#include <vector>

#include "tools/bench/bench.h"
#include "tools/exchange/course.h"

namespace tesk {

/// From a time on changes come back after a period.
struct SPeriod {
    long long begin;   ///< ticks
    long long period;  ///< ticks, above 0
    std::optional<long long> end;
};

struct SRecurrence {
    bool isEndless = false;  ///< as long as nothing else is known, it has to be cut
    std::optional<SPeriod> period;
    std::optional<SCount> count;
};

/// Looks at the stimulator of a signal; makes and plays nothing that changes others.
/// @throw CRefusal if the formula cannot be used
SRecurrence FindRecurrence(const SBench &bench, const SBenchSignal &signal);

/// The loop of a signal that was played up to two periods behind the beginning of its first one.
/// @param changes  by rising time; those from the beginning of the loop on are taken away
/// @return nothing, with all changes kept, if the second period is not what the first one is
std::optional<SLoop> TakeLoop(const SPeriod &period, std::vector<SChange> &changes);

}  // namespace tesk
