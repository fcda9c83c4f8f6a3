// Compares two sides, expected and got, signal by signal while their changes come.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "tools/compare/comparedvalue.h"
#include "tools/compare/comparepolicy.h"

namespace tesk {

enum class ECompareSide { Expected, Got };

/// The moment at which a pair first differs, and the values then.
struct SFirstDifference {
    long long time;
    CComparedRow expected;
    CComparedRow got;
};

/// What came out for a pair.
struct SPairVerdict {
    long long stretches = 0;  ///< of time in which it differs
    std::optional<SFirstDifference> first;
    long long lastEnd = 0;  ///< behind the last one

    /// Takes note of a stretch; stretches come by rising time.
    /// @param apart  one that begins so many ticks behind the last one's end, or fewer, goes on with that
    /// @return whether it is the pair's first one
    bool Add(long long begin, long long end, long long apart, const CComparedRow &expected, const CComparedRow &got);
};

class CToleranceWindow;

/// Knows nothing of where the changes come from: two files, or a file and a running simulation. Values hold until they
/// change. What is kept of a pair is its present values; with a tolerance also those within twice as long.
///
/// Two sides differ at a moment if an element of the one shows a value that does not match what the other one shows at that
/// moment, or with a tolerance at any moment so much earlier or later; `SComparePolicy` tells what matches.
class CComparison {
public:
    explicit CComparison(const SComparePolicy &policy);
    CComparison(CComparison &&) noexcept;
    ~CComparison();

    /// Adds two signals that shall be the same. Neither has a value yet. @return the number of the pair, from 0
    std::size_t AddPair(const SComparedForm &form);
    std::size_t PairCount() const { return m_pairs.size(); }
    const SComparedForm &Form(std::size_t pair) const { return m_pairs[pair].form; }
    const SComparePolicy &Policy() const { return m_policy; }

    /// Called when a pair is first found different. @param sink  must not change the comparison
    void OnFirstDifference(std::function<void(std::size_t pair)> sink) { m_sink = std::move(sink); }

    /// A side of a pair changes at a time: the caller writes its values into what this returns before the next call. Times
    /// must not fall.
    char *Change(ECompareSide side, std::size_t pair, long long time)
    {
        if (time != m_now)
            MoveTo(time);
        SPair &changed = m_pairs[pair];
        if (!changed.isTouched)
            Touch(pair);
        return (side == ECompareSide::Expected ? changed.expected : changed.got).data();
    }

    /// The values that a side of a pair shows now.
    const CComparedRow &Row(ECompareSide side, std::size_t pair) const
    {
        return side == ECompareSide::Expected ? m_pairs[pair].expected : m_pairs[pair].got;
    }

    /// All changes before a time have been told.
    void MoveTo(long long time);
    /// No later tick is compared. To be called before changes behind it are told.
    void EndAt(long long last);
    /// No change follows. @param last  the last tick that is compared, if the policy names no earlier one
    void Finish(long long last);

    /// Complete behind `Finish`.
    const SPairVerdict &Verdict(std::size_t pair) const { return m_pairs[pair].verdict; }

private:
    struct SPair {
        SComparedForm form;
        CComparedRow expected;
        CComparedRow got;
        bool isTouched = false;  // has changed at the present time
        bool differs = false;    // since before that
        SPairVerdict verdict;
        std::unique_ptr<CToleranceWindow> window;  // null without a tolerance
    };

    void Touch(std::size_t pair);
    void Settle();
    void SettlePair(SPair &pair);
    void Begin();
    void Note(SPair &pair, long long begin);
    bool IsIn(long long time) const { return time >= m_policy.from && (!m_policy.until || time <= *m_policy.until); }

    SComparePolicy m_policy;
    std::vector<SPair> m_pairs;
    std::vector<std::size_t> m_touched;
    std::function<void(std::size_t pair)> m_sink;
    long long m_now = -1;
    bool m_hasBegun = false;  // the beginning of what is compared has been met
};

}  // namespace tesk
