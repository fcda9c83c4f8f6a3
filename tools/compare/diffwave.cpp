// Both sides of what differs first, drawn.
#include <algorithm>
#include <deque>
#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "tools/compare/diffreport.h"
#include "tools/compare/sidewalk.h"

namespace tesk {

namespace {

constexpr std::size_t MostSignals = 8;
constexpr std::size_t TimesInFront = 8;  // at which something changes
constexpr std::size_t TimesBehind = 8;

// A few pairs of a comparison, walked through again.
class CPairWalk {
public:
    CPairWalk(IWaveformFile &expected, IWaveformFile &got, const SDiffReport &report,
              const std::vector<std::size_t> &signals)
        : m_policy(report.diff.comparison.Policy()), m_expectedForms(expected, m_policy, *report.diff.literals),
          m_gotForms(got, m_policy, *report.diff.literals),
          m_expected(expected, ECompareSide::Expected, {expected.GetResolution(), report.diff.resolution},
                     m_expectedForms),
          m_got(got, ECompareSide::Got, {got.GetResolution(), report.diff.resolution}, m_gotForms),
          m_comparison(m_policy)
    {
        for (const std::size_t signal : signals) {
            const SSignalPair &pair = report.diff.signals.pairs[signal];
            const std::size_t number = m_comparison.AddPair(pair.form);
            for (const SPairPart &part : pair.expected)
                m_expected.Feed(number, pair.form, part);
            for (const SPairPart &part : pair.got)
                m_got.Feed(number, pair.form, part);
        }
    }

    // Goes to the next time at which there is a change. @return false at the end
    bool Next()
    {
        const auto expected = m_expected.NextTime();
        const auto got = m_got.NextTime();
        if (!expected && !got)
            return false;
        constexpr long long Never = std::numeric_limits<long long>::max();
        m_time = std::min(expected.value_or(Never), got.value_or(Never));
        Take(m_expected);
        Take(m_got);
        return true;
    }

    long long Time() const { return m_time; }
    const CComparedRow &Row(ECompareSide side, std::size_t pair) const { return m_comparison.Row(side, pair); }

private:
    void Take(CSideWalk &walk)
    {
        if (walk.NextTime() != m_time)
            return;
        walk.Step();
        walk.Tell(m_comparison);
    }

    SComparePolicy m_policy;
    CSideForms m_expectedForms;
    CSideForms m_gotForms;
    CSideWalk m_expected;
    CSideWalk m_got;
    CComparison m_comparison;
    long long m_time = -1;
};

// The stretch that is drawn: some times of changes in front of a time and behind it.
std::pair<long long, long long> StretchAround(CPairWalk &walk, long long time)
{
    std::deque<long long> front;
    std::size_t behind = 0;
    long long end = time;
    while (behind < TimesBehind && walk.Next()) {
        end = std::max(end, walk.Time());
        behind += walk.Time() > time ? 1 : 0;
        if (walk.Time() < time)
            front.push_back(walk.Time());
        if (front.size() > TimesInFront)
            front.pop_front();
    }
    const long long begin = front.empty() ? 0 : front.front();
    return {begin, std::max(end, time) + (std::max(end, time) - begin) / 8 + 1};  // the last values are seen, too
}

void AddChange(STrace &trace, long long begin, long long time, std::string value)
{
    if (time <= begin)
        trace.changes.clear();  // the last one is in force where the picture begins
    if (trace.changes.empty() || trace.changes.back().value != value)
        trace.changes.push_back({std::max(begin, time), std::move(value)});
}

}  // namespace

SWaveform DrawnDifference(IWaveformFile &expected, IWaveformFile &got, const SDiffReport &report)
{
    std::vector<std::size_t> signals = DifferingSignals(report.diff);
    signals.resize(std::min(ShownOf(report, signals.size()), MostSignals));
    SWaveform waveform;
    waveform.resolution = report.diff.resolution;
    if (signals.empty())
        return waveform;
    const long long first = report.diff.Verdict(signals.front()).first->time;
    CPairWalk search(expected, got, report, signals);
    std::tie(waveform.begin, waveform.end) = StretchAround(search, first);
    waveform.mark = first;
    for (const std::size_t signal : signals) {
        const SSignalPair &pair = report.diff.signals.pairs[signal];
        for (const char *side : {" expected", " got"})
            waveform.traces.push_back({"", pair.expectedName + side, "", pair.isBus});
    }
    CPairWalk walk(expected, got, report, signals);
    while (walk.Next() && walk.Time() <= waveform.end) {
        for (std::size_t i = 0; i < signals.size(); ++i) {
            for (const auto side : {ECompareSide::Expected, ECompareSide::Got})
                AddChange(waveform.traces[2 * i + (side == ECompareSide::Got ? 1 : 0)], waveform.begin, walk.Time(),
                          ValueText(report, signals[i], walk.Row(side, i)));
        }
    }
    return waveform;
}

}  // namespace tesk
