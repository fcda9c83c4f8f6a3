#include "tools/compare/diffwalk.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "base/saturate.h"
#include "tools/commandline.h"
#include "tools/progress.h"
#include "tools/timetext.h"

namespace tesk {

CDiffWalk::SSide::SSide(IWaveformFile &of, ECompareSide side, const SComparePolicy &policy, CLiteralTexts &literals,
                        long long ticks)
    : file(of), resolution(ticks), forms(of, policy, literals), walk(of, side, {of.GetResolution(), ticks}, forms)
{}

CDiffWalk::CDiffWalk(IWaveformFile &expected, IWaveformFile &got, const SComparePolicy &policy, CLiteralTexts &literals,
                     long long resolution)
    : m_tolerance(policy.tolerance), m_expected(expected, ECompareSide::Expected, policy, literals, resolution),
      m_got(got, ECompareSide::Got, policy, literals, resolution)
{}

std::vector<SPairPart> CDiffWalk::SourceParts(SSide &side, std::vector<SPairPart> parts)
{
    for (SPairPart &part : parts)
        part.signal = side.walk.SourceOf(part.signal);
    return parts;
}

// Whether both sides are a whole signal of one type. With a tolerance the comparison must know of every change.
bool CDiffWalk::AreAlike(const SSignalPair &pair)
{
    if (m_tolerance > 0 || pair.expected.size() != 1 || pair.got.size() != 1)
        return false;
    const auto isWhole = [&](SSide &side, const SPairPart &part) {
        return part.element == 0 && part.slot == 0 && part.count == pair.form.width &&
               static_cast<std::size_t>(side.file.GetSignals()[part.signal].elementCount) == part.count;
    };
    return isWhole(m_expected, pair.expected.front()) && isWhole(m_got, pair.got.front()) &&
           m_expected.forms.Of(pair.expected.front().signal) == m_got.forms.Of(pair.got.front().signal);
}

std::size_t CDiffWalk::Add(const SSignalPair &pair, CComparison &comparison)
{
    const auto [known, isNew] =
        m_known.try_emplace({SourceParts(m_expected, pair.expected), SourceParts(m_got, pair.got)});
    if (!isNew)
        return known->second;
    known->second = comparison.AddPair(pair.form);
    SPair &added = m_pairs.emplace_back();
    if (AreAlike(pair)) {
        added.expected = known->first.first.front().signal;
        added.got = known->first.second.front().signal;
    }
    for (const SPairPart &part : pair.expected)
        m_expected.walk.Feed(known->second, pair.form, part);
    for (const SPairPart &part : pair.got)
        m_got.walk.Feed(known->second, pair.form, part);
    return known->second;
}

// Of some files the end is known when their last change is.
std::optional<long long> CDiffWalk::EndOf(SSide &side)
{
    if (side.end)
        return side.end;
    const auto end = side.file.FindEndTime();
    if (!end)
        return std::nullopt;
    side.end = MultiplySaturating(std::max(0LL, *end), side.file.GetResolution() / side.resolution);
    if (*side.end > LongestTime)
        throw CRefusal("the files' times are too long to be compared in ticks of " + TickText(1, side.resolution));
    return side.end;
}

// The last tick of which the comparison must know.
long long CDiffWalk::Last(std::optional<long long> until)
{
    long long last = until.value_or(LongestTime);
    for (SSide *const side : {&m_expected, &m_got})
        last = std::min(last, EndOf(*side).value_or(LongestTime));
    return AddSaturating(last, m_tolerance);
}

void CDiffWalk::Run(CComparison &comparison, std::optional<long long> until)
{
    constexpr long long Never = std::numeric_limits<long long>::max();
    m_known.clear();
    CProgressLine progress("Comparing");
    const auto estimate = [](SSide &side) {
        return MultiplySaturating(side.file.EstimateEndTime(), side.file.GetResolution() / side.resolution);
    };
    const long long end = std::min({until.value_or(Never), estimate(m_expected), estimate(m_got)});
    while (true) {
        const std::optional<long long> expected = m_expected.walk.NextTime();
        const std::optional<long long> got = m_got.walk.NextTime();
        const long long time = std::min(expected.value_or(Never), got.value_or(Never));
        if ((!expected && !got) || time > Last(until))
            break;
        progress.Show(time, end);
        ++m_step;
        if (expected == time)
            Take(m_expected, time, comparison);
        if (got == time)
            Take(m_got, time, comparison);
        for (const std::size_t pair : m_met)
            Compare(pair, time, comparison);
        m_met.clear();
    }
    for (std::size_t pair = 0; pair < m_pairs.size(); ++pair) {
        if (!m_pairs[pair].isTold)
            TellPair(pair, m_lastTime, comparison);
    }
}

// Goes to the changes of a side, and tells those of pairs whose raw values are not compared.
void CDiffWalk::Take(SSide &side, long long time, CComparison &comparison)
{
    side.walk.Step();
    m_lastTime = time;
    for (const std::uint32_t source : side.walk.Changed()) {
        for (const CSideWalk::SFed &fed : side.walk.FedBy(source)) {
            SPair &pair = m_pairs[fed.pair];
            if (pair.expected == None) {
                side.walk.Tell(comparison, source, fed, time);
            } else if (pair.step != m_step) {
                pair.step = m_step;
                m_met.push_back(fed.pair);
            }
        }
    }
}

bool CDiffWalk::HasSameValues(const SPair &pair) const
{
    const std::span<const std::uint8_t> expected = m_expected.walk.GetPositions(pair.expected);
    const std::span<const std::uint8_t> got = m_got.walk.GetPositions(pair.got);
    if (expected.size() != got.size())
        return false;
    if (expected.empty())
        return m_expected.walk.GetValues(pair.expected) == m_got.walk.GetValues(pair.got);
    return expected.front() == got.front() && std::memcmp(expected.data(), got.data(), expected.size()) == 0;
}

void CDiffWalk::Compare(std::size_t number, long long time, CComparison &comparison)
{
    SPair &pair = m_pairs[number];
    const bool wasLike = std::exchange(pair.wasLike, HasSameValues(pair));
    pair.isTold = !wasLike || !pair.wasLike;
    if (pair.isTold)
        TellPair(number, time, comparison);
}

void CDiffWalk::TellPair(std::size_t number, long long time, CComparison &comparison)
{
    const auto tell = [&](const CSideWalk &walk, std::size_t source) {
        const std::span<const CSideWalk::SFed> fed = walk.FedBy(source);
        walk.Tell(comparison, source, *std::ranges::lower_bound(fed, number, {}, &CSideWalk::SFed::pair), time);
    };
    tell(m_expected.walk, m_pairs[number].expected);
    tell(m_got.walk, m_pairs[number].got);
}

std::optional<std::pair<long long, std::size_t>> CDiffWalk::FindChange(const CComparison &comparison, ECompareSide side,
                                                                       long long last)
{
    CSideWalk &walk = SideOf(side).walk;
    for (auto next = walk.NextTime(); next && *next <= last; next = walk.NextTime()) {
        walk.Step();
        if (const auto pair = walk.FindChange(comparison))
            return std::pair(*next, *pair);
    }
    return std::nullopt;
}

}  // namespace tesk
