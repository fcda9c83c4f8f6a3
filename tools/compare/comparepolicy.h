// What counts as a difference between a run that is expected and one that was got.
#pragma once

#include <optional>

namespace tesk {

/// Times are in ticks of whoever compares.
struct SComparePolicy {
    bool ignoresUnknown = false;  ///< an unknown value that is expected matches anything
    bool hasNineStates = false;   ///< the letters of std_logic are told apart, not only 0, 1, x and z
    /// Reals may be so far apart. Without one they may differ by as much as the sixteen digits lose that dumps have.
    std::optional<double> realTolerance = {};
    /// At every moment each side must show a value that the other one shows at most so much earlier or later.
    long long tolerance = 0;
    long long from = 0;                   ///< what happens before is not compared; the values in force then are
    std::optional<long long> until = {};  ///< the last tick that is compared
};

}  // namespace tesk
