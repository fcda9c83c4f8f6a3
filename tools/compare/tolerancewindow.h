// What a pair shows within a tolerance, for finding the moments at which no earlier or later value will do.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "tools/compare/comparedvalue.h"
#include "tools/compare/comparepolicy.h"

namespace tesk {

struct SPairVerdict;

/// Decides on a moment once all is known that comes within the tolerance behind it, and forgets what lies so far back that
/// nothing depends on it any more.
class CToleranceWindow {
public:
    /// @param expected, got  hold from the beginning of time
    CToleranceWindow(const SComparePolicy &policy, EComparedKind kind, const CComparedRow &expected,
                     const CComparedRow &got);

    /// Other values hold from a time on. @return whether the pair's first difference was found
    bool Add(long long time, const CComparedRow &expected, const CComparedRow &got, SPairVerdict &verdict);
    /// @param last  the last tick that is compared
    void EndAt(long long last) { m_policy.until = last; }
    /// The last values hold for ever.
    bool Finish(SPairVerdict &verdict);

private:
    using CStretch = std::pair<long long, long long>;  // first tick, and behind the last one

    // Values that hold until the next state begins.
    struct SState {
        long long begin;
        CComparedRow expected;
        CComparedRow got;
    };

    void Append(long long begin, const CComparedRow &expected, const CComparedRow &got);
    long long EndOf(std::size_t state) const;
    bool Decide(std::size_t state, SPairVerdict &verdict);
    template <class IsMatch>
    void FindGaps(const CStretch &stretch, const IsMatch &isMatch);
    void Forget();

    SComparePolicy m_policy;
    EComparedKind m_kind;
    std::vector<SState> m_states;  // those outside of the next two are forgotten: their room is used again
    std::size_t m_first = 0;
    std::size_t m_end = 0;
    std::size_t m_undecided = 0;   // the first state that has not been decided on
    std::vector<CStretch> m_gaps;  // of the state that is decided on
};

}  // namespace tesk
