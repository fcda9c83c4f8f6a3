#include "tools/compare/filediff.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <string>

#include "tools/commandline.h"
#include "tools/compare/diffwalk.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace tesk {

namespace {

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
    const auto expectedEnd = walk.End(ECompareSide::Expected);
    const auto gotEnd = walk.End(ECompareSide::Got);
    const long long end =
        std::min(expectedEnd.value_or(CDiffWalk::LongestTime), gotEnd.value_or(CDiffWalk::LongestTime));
    if (expectedEnd == gotEnd || policy.until.value_or(CDiffWalk::LongestTime) <= end)
        return;
    const bool endsExpected = expectedEnd == end;
    const ECompareSide longer = endsExpected ? ECompareSide::Got : ECompareSide::Expected;
    const auto change = walk.FindChange(diff.comparison, longer, policy.until.value_or(CDiffWalk::LongestTime));
    if (!change)
        return;
    const auto signal = std::ranges::find(diff.pairOf, change->second) - diff.pairOf.begin();
    diff.earlyEnd = SEarlyEnd{endsExpected ? ECompareSide::Expected : ECompareSide::Got, end, change->first,
                              NameOf(diff.signals.pairs[static_cast<std::size_t>(signal)], longer)};
}

// Where the comparison ends, once both files have been walked as far as that.
long long EndOfComparison(CDiffWalk &walk, const SComparePolicy &policy, long long resolution)
{
    long long end = CDiffWalk::LongestTime;
    for (const ECompareSide side : {ECompareSide::Expected, ECompareSide::Got})
        end = std::min(end, walk.End(side).value_or(end));
    if (policy.from > end)
        throw CRefusal("--from is behind the end of what both files have, " + TickText(end, resolution));
    return std::min(end, policy.until.value_or(end));
}

}  // namespace

long long CommonResolution(IWaveformFile &expected, IWaveformFile &got)
{
    return std::max(1LL, std::gcd(expected.GetResolution(), got.GetResolution()));
}

SFileDiff DiffFiles(IWaveformFile &expected, IWaveformFile &got, const SFileDiffOptions &options)
{
    const SComparePolicy &policy = options.policy;
    SFileDiff diff{{}, {}, std::make_shared<CLiteralTexts>(), CComparison(policy), CommonResolution(expected, got)};
    CDiffWalk walk(expected, got, policy, *diff.literals, diff.resolution);
    diff.signals = PairSignals({expected.GetSignals(), walk.ExpectedKinds()}, {got.GetSignals(), walk.GotKinds()},
                               options.scopes, options.globs);
    RefuseUnmatched(diff.signals, options);
    for (const SSignalPair &pair : diff.signals.pairs)
        diff.pairOf.push_back(walk.Add(pair, diff.comparison));
    walk.Run(diff.comparison, policy.until);
    diff.from = policy.from;
    diff.until = EndOfComparison(walk, policy, diff.resolution);
    diff.comparison.Finish(diff.until);
    FindEarlyEnd(walk, diff, policy);
    diff.expectedEnd = walk.End(ECompareSide::Expected);
    diff.gotEnd = walk.End(ECompareSide::Got);
    return diff;
}

}  // namespace tesk
