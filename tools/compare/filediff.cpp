#include "tools/compare/filediff.h"

#include <algorithm>
#include <limits>
#include <map>
#include <numeric>
#include <utility>

#include "base/saturate.h"
#include "tools/commandline.h"
#include "tools/compare/sidewalk.h"
#include "tools/progress.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace tesk {

namespace {

constexpr long long LongestTime = std::numeric_limits<long long>::max() / 2;

long long EndIn(IWaveformFile &file, long long resolution)
{
    const long long end = MultiplySaturating(std::max(0LL, file.GetEndTime()), file.GetResolution() / resolution);
    if (end > LongestTime)
        throw CRefusal("the files' times are too long to be compared in ticks of " + TickText(1, resolution));
    return end;
}

// Both files on their way through time.
class CDiffWalk {
public:
    CDiffWalk(IWaveformFile &expected, IWaveformFile &got, const SComparePolicy &policy, CLiteralTexts &literals,
              long long resolution)
        : m_expectedForms(expected, policy, literals), m_gotForms(got, policy, literals),
          m_expected(expected, ECompareSide::Expected, {expected.GetResolution(), resolution}, m_expectedForms),
          m_got(got, ECompareSide::Got, {got.GetResolution(), resolution}, m_gotForms)
    {}

    std::vector<EComparedKind> ExpectedKinds() const { return m_expectedForms.Kinds(); }
    std::vector<EComparedKind> GotKinds() const { return m_gotForms.Kinds(); }

    // @return the pair of the comparison that stands for it and its aliases
    std::size_t Add(const SSignalPair &pair, CComparison &comparison)
    {
        const auto [known, isNew] =
            m_known.try_emplace({SourceParts(m_expected, pair.expected), SourceParts(m_got, pair.got)});
        if (!isNew)
            return known->second;
        known->second = comparison.AddPair(pair.form);
        for (const SPairPart &part : pair.expected)
            m_expected.Feed(known->second, pair.form, part);
        for (const SPairPart &part : pair.got)
            m_got.Feed(known->second, pair.form, part);
        return known->second;
    }

    /// Goes up to a tick. @param end  of what is there, for the progress
    void Run(CComparison &comparison, long long last, long long end)
    {
        m_known.clear();
        CProgressLine progress("Comparing");
        m_hasExpected = m_expected.Next();
        m_hasGot = m_got.Next();
        while (m_hasExpected || m_hasGot) {
            const bool isExpected = m_hasExpected && (!m_hasGot || m_expected.Time() <= m_got.Time());
            CSideWalk &next = isExpected ? m_expected : m_got;
            if (next.Time() > last)
                return;
            progress.Show(next.Time(), end);
            next.Tell(comparison);
            (isExpected ? m_hasExpected : m_hasGot) = next.Next();
        }
    }

    // The next change of a side up to a tick, behind what was run: its time and pair.
    std::optional<std::pair<long long, std::size_t>> FindChange(const CComparison &comparison, ECompareSide side,
                                                                long long last)
    {
        const bool isExpected = side == ECompareSide::Expected;
        CSideWalk &walk = isExpected ? m_expected : m_got;
        bool hasNext = isExpected ? m_hasExpected : m_hasGot;
        for (; hasNext && walk.Time() <= last; hasNext = walk.Next()) {
            if (const auto pair = walk.FindChange(comparison))
                return std::pair(walk.Time(), *pair);
        }
        return std::nullopt;
    }

private:
    static std::vector<SPairPart> SourceParts(CSideWalk &walk, std::vector<SPairPart> parts)
    {
        for (SPairPart &part : parts)
            part.signal = walk.SourceOf(part.signal);
        return parts;
    }

    CSideForms m_expectedForms;
    CSideForms m_gotForms;
    CSideWalk m_expected;
    CSideWalk m_got;
    bool m_hasExpected = false;
    bool m_hasGot = false;
    std::map<std::pair<std::vector<SPairPart>, std::vector<SPairPart>>, std::size_t> m_known;
};

void RefuseUnmatched(const SSignalPairs &signals, const SFileDiffOptions &options)
{
    if (!signals.unmatchedGlobs.empty())
        throw CRefusal("no signal of either file is named " + Quote(signals.unmatchedGlobs.front()) +
                       "; the names are those of the first file, and * stands for any letters");
    if (!signals.pairs.empty() || !signals.unlike.empty())
        return;
    throw CRefusal(
        options.scopes.empty()
            ? "the files have no signal in common; \"--scope tb.dut=top.dut\" compares what lies below tb.dut "
              "in the first file with what lies below top.dut in the second one"
            : "the files have no signal in common below the scopes of --scope; \"tesk signals FILE --names\" "
              "lists the names");
}

const std::string &NameOf(const SSignalPair &pair, ECompareSide side)
{
    return side == ECompareSide::Expected ? pair.expectedName : pair.gotName;
}

// Whether the file that goes on longer does change behind the end of the other one.
void FindEarlyEnd(CDiffWalk &walk, SFileDiff &diff, const SComparePolicy &policy)
{
    if (diff.expectedEnd == diff.gotEnd)
        return;
    const bool endsExpected = diff.expectedEnd < diff.gotEnd;
    const ECompareSide longer = endsExpected ? ECompareSide::Got : ECompareSide::Expected;
    const auto change = walk.FindChange(diff.comparison, longer, policy.until.value_or(LongestTime));
    if (!change)
        return;
    const auto signal = std::ranges::find(diff.pairOf, change->second) - diff.pairOf.begin();
    diff.earlyEnd =
        SEarlyEnd{endsExpected ? ECompareSide::Expected : ECompareSide::Got, std::min(diff.expectedEnd, diff.gotEnd),
                  change->first, NameOf(diff.signals.pairs[static_cast<std::size_t>(signal)], longer)};
}

}  // namespace

long long CommonResolution(IWaveformFile &expected, IWaveformFile &got)
{
    return std::max(1LL, std::gcd(expected.GetResolution(), got.GetResolution()));
}

SFileDiff DiffFiles(IWaveformFile &expected, IWaveformFile &got, const SFileDiffOptions &options)
{
    const long long resolution = CommonResolution(expected, got);
    const long long expectedEnd = EndIn(expected, resolution);
    const long long gotEnd = EndIn(got, resolution);
    const long long end = std::min(expectedEnd, gotEnd);
    if (options.policy.from > end)
        throw CRefusal("--from is behind the end of what both files have, " + TickText(end, resolution));
    SComparePolicy policy = options.policy;
    policy.until = std::min(end, policy.until.value_or(end));
    SFileDiff diff{{},
                   {},
                   std::make_shared<CLiteralTexts>(),
                   CComparison(policy),
                   resolution,
                   expectedEnd,
                   gotEnd,
                   policy.from,
                   *policy.until,
                   std::nullopt};
    CDiffWalk walk(expected, got, options.policy, *diff.literals, diff.resolution);
    diff.signals = PairSignals({expected.GetSignals(), walk.ExpectedKinds()}, {got.GetSignals(), walk.GotKinds()},
                               options.scopes, options.globs);
    RefuseUnmatched(diff.signals, options);
    for (const SSignalPair &pair : diff.signals.pairs)
        diff.pairOf.push_back(walk.Add(pair, diff.comparison));
    walk.Run(diff.comparison, AddSaturating(diff.until, options.policy.tolerance), diff.until);
    diff.comparison.Finish(diff.until);
    FindEarlyEnd(walk, diff, options.policy);
    return diff;
}

}  // namespace tesk
