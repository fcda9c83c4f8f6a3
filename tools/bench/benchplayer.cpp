#include "tools/bench/benchplayer.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "tools/commandline.h"
#include "tools/play/formula.h"
#include "tools/play/player.h"
#include "tools/play/walk.h"
#include "tools/quote.h"
#include "tools/writers/picture.h"

namespace tesk {

namespace {

SPlayed PlaySignal(const SBench &bench, const SBenchSignal &signal, long long from, std::optional<long long> until)
try {
    SPlayedSignal played;
    played.description = signal.description;
    if (!played.description.empty())
        DescribeElements(played);
    const SWalkTimes times{signal.start, std::max(from, signal.start), until};
    SPlayed result = PlayOnSignal(signal.formula, played, bench.resolution, times);
    for (STrace &trace : result.traces)
        trace.signal = signal.name;
    return result;
} catch (const CRefusal &refusal) {
    throw CRefusal("signal " + Quote(signal.name) + ": " + refusal.what());
}

long long LastChange(const SPlayed &played)
{
    long long last = 0;
    for (const STrace &trace : played.traces)
        last = std::max(last, trace.changes.empty() ? 0 : trace.changes.back().ticks);
    return last;
}

// Where a bench without an end of its own ends: with the last stimulator that has one, else where the first of the others
// has shown as many changes as are shown of one.
long long FindEnd(const std::vector<SPlayed> &signals)
{
    std::optional<long long> ended, cut;
    for (const SPlayed &signal : signals) {
        const long long last = LastChange(signal);
        if (signal.isCut)
            cut = std::min(cut.value_or(last), last);
        else
            ended = std::max(ended.value_or(last), last);
    }
    return ended && (*ended > 0 || !cut) ? *ended : cut.value_or(0);
}

std::vector<SPlayed> PlaySignals(const SBench &bench, long long from, std::optional<long long> until)
{
    std::vector<SPlayed> signals;
    for (const SBenchSignal &signal : bench.signals)
        signals.push_back(PlaySignal(bench, signal, from, until));
    return signals;
}

}  // namespace

SWaveform PlayBench(const SBench &bench, const SBenchStretch &stretch)
{
    const CSimulationRun run;  // of all signals: what one opens the others find open
    std::optional<long long> until = stretch.until ? stretch.until : bench.until;
    std::vector<SPlayed> signals = PlaySignals(bench, stretch.from, until);
    if (!until && std::ranges::any_of(signals, &SPlayed::isCut)) {
        until = FindEnd(signals);
        if (std::ranges::all_of(signals, &SPlayed::isCut))
            std::fprintf(
                stderr,
                "tesk: the stimulators go on for ever; these are the first %zu changes, give --until for others\n",
                DefaultChanges);
        signals = PlaySignals(bench, stretch.from, until);
    }
    SWaveform waveform;
    waveform.formula = bench.path;
    waveform.resolution = bench.resolution;
    waveform.begin = stretch.from;
    for (SPlayed &signal : signals)
        std::ranges::move(signal.traces, std::back_inserter(waveform.traces));
    waveform.end = std::max(until.value_or(PictureEnd(waveform)), waveform.begin);
    return waveform;
}

}  // namespace tesk
