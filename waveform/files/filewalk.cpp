#include "waveform/files/filewalk.h"

#include <map>
#include <utility>

#include "waveform/files/mergedwalk.h"
#include "waveform/files/signalwalk.h"

namespace tesk {

namespace {

SChangeCount CountSignal(IWaveformFile &file, const SFileSignal &signal)
{
    SChangeCount changes;
    CSignalWalk walk(file, signal);
    while (walk.Next())
        changes.Add(walk.GetTime());
    return changes;
}

}  // namespace

std::unique_ptr<IChangeWalk> WalkInTime(IWaveformFile &file, const std::vector<SFileSignal> &signals)
{
    std::unique_ptr<IChangeWalk> walk = file.WalkChanges(signals);
    return walk != nullptr ? std::move(walk) : std::make_unique<CMergedWalk>(file, signals);
}

// Signals that share their events are walked once: a clock may have as many names as a design has modules.
std::vector<SChangeCount> CountChanges(IWaveformFile &file, const std::vector<SFileSignal> &signals,
                                       const FProgress &progress)
{
    if (auto counted = file.CountChanges(signals, {}, progress))
        return *std::move(counted);
    std::map<std::vector<long long>, SChangeCount> known;
    std::vector<SChangeCount> counts;
    for (const SFileSignal &signal : signals) {
        progress(static_cast<long long>(counts.size()), static_cast<long long>(signals.size()));
        const auto [changes, isNew] = known.try_emplace(IdentifyEvents(file, signal));
        if (isNew)
            changes->second = CountSignal(file, signal);
        counts.push_back(changes->second);
    }
    return counts;
}

}  // namespace tesk
