#include "tools/bench/benchplayer.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <span>
#include <string>
#include <utility>

#include "tools/commandline.h"
#include "tools/quote.h"
#include "tools/view/recordedwaveform.h"
#include "tools/writers/picture.h"

namespace tesk {

namespace {

bool IsKnownToBeWrong(const SBenchSignal &signal, const std::vector<SBenchFault> &faults)
{
    return std::ranges::any_of(faults, [&](const SBenchFault &fault) {
        return fault.severity == ESeverity::Error && fault.place == signal.place;
    });
}

// Whether something that a replay names is wrong.
bool HasAnyError(const std::vector<SBenchFault> &faults, const std::vector<SBenchReplay> &replays)
{
    return std::ranges::any_of(replays, [&](const SBenchReplay &replay) {
        return std::ranges::any_of(faults, [&](const SBenchFault &fault) {
            return fault.severity == ESeverity::Error && fault.place == replay.place;
        });
    });
}

}  // namespace

CBenchPlayer::CBenchPlayer(const SBench &bench, const SBenchStretch &stretch, std::vector<SBenchFault> &faults)
    : m_bench(bench), m_stretch(stretch), m_replays(bench, faults)
{
    m_canPlay = !HasAnyError(faults, bench.replays);
    if (!m_stretch.until)
        m_stretch.until = bench.until;
    for (const SBenchSignal &signal : bench.signals)
        Prepare(signal, faults);
    std::ranges::stable_sort(faults, {}, &SBenchFault::place);
}

void CBenchPlayer::Prepare(const SBenchSignal &signal, std::vector<SBenchFault> &faults)
try {
    SPlayedSignal played;
    played.description = signal.description;
    if (!played.description.empty())
        DescribeElements(played);
    const SWalkTimes times{signal.start, std::max(m_stretch.from, signal.start), m_stretch.until};
    m_signals.emplace_back(signal.formula, std::move(played), m_bench.resolution, times);
} catch (const CRefusal &refusal) {
    m_canPlay = false;
    if (!IsKnownToBeWrong(signal, faults))
        faults.push_back({ESeverity::Error, signal.place, "signal " + Quote(signal.name) + ": " + refusal.what()});
}

SWalked CBenchPlayer::WalkAll()
{
    std::vector<SWalkGroup> groups;
    SWalkStretch stretch{m_stretch.from, m_stretch.until, m_replays.End()};
    for (const CPreparedSignal &signal : m_signals) {
        groups.push_back(signal.Group());
        stretch.ended = std::max(stretch.ended, signal.Ended());
    }
    return Walk(groups, stretch);
}

SWaveform CBenchPlayer::Play()
{
    SWalked walked = WalkAll();
    if (walked.isCut)
        std::fprintf(stderr,
                     "tesk: the stimulators go on for ever; these are the first %zu changes, give --until for others\n",
                     DefaultChanges);
    SWaveform waveform;
    waveform.formula = m_bench.path;
    waveform.resolution = m_bench.resolution;
    waveform.begin = m_stretch.from;
    std::span<std::vector<SChange>> changes = walked.changes;
    for (std::size_t i = 0; i < m_signals.size(); ++i) {
        const std::size_t count = m_signals[i].Group().stimuli.size();
        for (STrace &trace : m_signals[i].Show(changes.first(count))) {
            trace.signal = m_bench.signals[i].name;
            waveform.traces.push_back(std::move(trace));
        }
        changes = changes.subspan(count);
    }
    const std::optional<long long> end = m_stretch.until ? m_stretch.until : walked.end;
    waveform.end = std::max(end.value_or(std::max(PictureEnd(waveform), m_replays.End())), waveform.begin);
    const SRecordedWindow window{m_bench.resolution, waveform.begin, waveform.end};
    std::ranges::move(ReadRecorded(m_replays.Driven(), window), std::back_inserter(waveform.traces));
    return waveform;
}

}  // namespace tesk
