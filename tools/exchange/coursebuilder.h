// A bench played to courses.
#pragma once

#include <optional>

#include "tools/bench/bench.h"
#include "tools/exchange/course.h"
#include "tools/exchange/losses.h"

namespace tesk {

/// What a form can say of a stimulator that goes on for ever. What it cannot is written change by change up to an end.
struct SFormAbility {
    bool hasLoops = false;
    bool hasEndedLoops = false;          ///< a loop may come to an end
    bool hasLoopsBehindChanges = false;  ///< a loop may come behind changes that are not repeated
    bool hasCounts = false;
};

/// Plays all signals of a bench.
/// @param until   ticks; in place of that of the bench, if given
/// @param losses  receives each signal that has no end where one is needed, and each that cannot be played
SCourses BuildCourses(const SBench &bench, std::optional<long long> until, const SFormAbility &ability,
                      CLosses &losses);

}  // namespace tesk
