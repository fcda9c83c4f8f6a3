#include "integrations/vpi/recordedclocks.h"

#include <algorithm>
#include <cstddef>

#include "waveform/files/filewalk.h"

namespace tesk::vpi {

namespace {

constexpr std::size_t FewestChanges = 8;
constexpr std::size_t MostChanges = 64;
constexpr std::size_t MostTimes = 1 << 13;  // at which scalars change

// Of each scalar the times of its first changes, that at the beginning left out: a value there is no edge. No more is read of
// the file than its beginning, be it that some signal hardly ever changes.
std::vector<std::vector<long long>> FirstTimes(IWaveformFile &file, const std::vector<SFileSignal> &signals)
{
    std::vector<std::vector<long long>> times(signals.size());
    std::vector<SFileSignal> scalars;
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < signals.size(); ++i) {
        if (signals[i].elementCount != 1)
            continue;
        scalars.push_back(signals[i]);
        places.push_back(i);
    }
    CFileWalk walk(file, scalars);
    std::size_t missing = scalars.size();  // that may have more changes
    long long time = -1;
    for (std::size_t met = 0; missing > 0 && met < MostTimes && walk.Next(); time = walk.GetTime()) {
        met += walk.GetTime() != time ? 1 : 0;
        std::vector<long long> &first = times[places[walk.GetSignal()]];
        if (walk.GetTime() <= 0 || first.size() == MostChanges)
            continue;
        first.push_back(walk.GetTime());
        missing -= first.size() == MostChanges ? 1 : 0;
    }
    return times;
}

bool IsEven(const std::vector<long long> &times)
{
    if (times.size() < FewestChanges)
        return false;
    for (std::size_t i = 3; i < times.size(); ++i) {
        if (times[i] - times[i - 2] != times[i - 1] - times[i - 3])
            return false;
    }
    return true;
}

// Whether one changes only when the other does, and less often.
bool Follows(const std::vector<long long> &slow, const std::vector<long long> &fast)
{
    const long long end = std::min(slow.back(), fast.back());
    const auto upTo = [&](const std::vector<long long> &times) { return std::ranges::upper_bound(times, end); };
    return upTo(slow) - slow.begin() < upTo(fast) - fast.begin() &&
           std::includes(fast.begin(), upTo(fast), slow.begin(), upTo(slow));
}

}  // namespace

std::vector<bool> FindClocks(IWaveformFile &file, const std::vector<SFileSignal> &signals)
{
    std::vector<std::size_t> even;
    const std::vector<std::vector<long long>> times = FirstTimes(file, signals);
    for (std::size_t i = 0; i < signals.size(); ++i) {
        if (IsEven(times[i]))
            even.push_back(i);
    }
    std::vector<bool> isClock(signals.size(), false);
    for (const std::size_t i : even)
        isClock[i] = std::ranges::none_of(even, [&](std::size_t other) { return Follows(times[i], times[other]); });
    return isClock;
}

}  // namespace tesk::vpi
