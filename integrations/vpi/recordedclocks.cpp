#include "integrations/vpi/recordedclocks.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace tesk::vpi {

namespace {

constexpr std::size_t FewestChanges = 8;
constexpr std::size_t MostChanges = 64;

// Times of the first changes, that at the beginning left out: a value there is no edge.
std::vector<long long> FirstTimes(IWaveformFile &file, const SFileSignal &signal)
{
    std::vector<long long> times;
    const std::unique_ptr<IElementWalk> walk = file.Walk(signal.firstElement);
    long long time = 0;
    std::uint64_t value = 0;
    while (walk != nullptr && times.size() < MostChanges && walk->Next(time, value)) {
        if (time > 0)
            times.push_back(time);
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
    std::vector<std::vector<long long>> times(signals.size());
    for (std::size_t i = 0; i < signals.size(); ++i) {
        if (signals[i].elementCount == 1)
            times[i] = FirstTimes(file, signals[i]);
        if (IsEven(times[i]))
            even.push_back(i);
    }
    std::vector<bool> isClock(signals.size(), false);
    for (const std::size_t i : even)
        isClock[i] = std::ranges::none_of(even, [&](std::size_t other) { return Follows(times[i], times[other]); });
    return isClock;
}

}  // namespace tesk::vpi
