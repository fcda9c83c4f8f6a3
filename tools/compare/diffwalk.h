// Two files on their way through time, compared.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "tools/compare/comparison.h"
#include "tools/compare/sidewalk.h"
#include "tools/compare/signalpairs.h"

namespace tesk {

/// The comparison is told of those changes only that may make a difference: where both sides of a pair have the same raw values
/// of one type, as they mostly do, nothing is brought into another form.
class CDiffWalk {
public:
    static constexpr long long LongestTime = std::numeric_limits<long long>::max() / 2;

    /// @param expected, got  must outlive the walk, as `literals` must
    /// @param resolution     femtoseconds per tick of the comparison
    CDiffWalk(IWaveformFile &expected, IWaveformFile &got, const SComparePolicy &policy, CLiteralTexts &literals,
              long long resolution);

    std::vector<EComparedKind> ExpectedKinds() const { return m_expected.forms.Kinds(); }
    std::vector<EComparedKind> GotKinds() const { return m_got.forms.Kinds(); }

    /// @return the pair of the comparison that stands for it and its aliases
    std::size_t Add(const SSignalPair &pair, CComparison &comparison);

    /// Goes up to a tick, or up to the end of the file that ends first and so much further as the tolerance is.
    /// @throw CRefusal if a time is too long
    void Run(CComparison &comparison, std::optional<long long> until);

    /// Ticks; known of a file that ends no later than where `Run` has gone to.
    std::optional<long long> End(ECompareSide side) { return EndOf(SideOf(side)); }

    /// The next change of a side up to a tick, behind what was run: its time and pair.
    std::optional<std::pair<long long, std::size_t>> FindChange(const CComparison &comparison, ECompareSide side,
                                                                long long last);

private:
    static constexpr std::size_t None = std::numeric_limits<std::size_t>::max();

    struct SSide {
        SSide(IWaveformFile &of, ECompareSide side, const SComparePolicy &policy, CLiteralTexts &literals,
              long long ticks);

        IWaveformFile &file;
        long long resolution;  // femtoseconds per tick
        CSideForms forms;
        CSideWalk walk;
        std::optional<long long> end;  // ticks
    };
    // A pair of the comparison.
    struct SPair {
        std::size_t expected =
            None;                // the source that is all there is to a side, if the raw values are compared first;
        std::size_t got = None;  // else None
        bool wasLike = true;     // their raw values were the same when they were looked at last
        bool isTold = true;      // the comparison knows these values
        std::uint64_t step = 0;  // in which it was met last
    };

    SSide &SideOf(ECompareSide side) { return side == ECompareSide::Expected ? m_expected : m_got; }
    static std::optional<long long> EndOf(SSide &side);
    static std::vector<SPairPart> SourceParts(SSide &side, std::vector<SPairPart> parts);
    bool AreAlike(const SSignalPair &pair);
    long long Last(std::optional<long long> until);
    void Take(SSide &side, long long time, CComparison &comparison);
    bool HasSameValues(const SPair &pair) const;
    void Compare(std::size_t number, long long time, CComparison &comparison);
    void TellPair(std::size_t number, long long time, CComparison &comparison);

    long long m_tolerance;
    SSide m_expected;
    SSide m_got;
    std::vector<SPair> m_pairs;
    std::vector<std::size_t> m_met;  // in a step, of those whose raw values are compared
    std::uint64_t m_step = 0;
    long long m_lastTime = 0;  // of the last step
    std::map<std::pair<std::vector<SPairPart>, std::vector<SPairPart>>, std::size_t> m_known;
};

}  // namespace tesk
