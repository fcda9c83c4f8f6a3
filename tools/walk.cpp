#include "tools/walk.h"

#include <limits>

#include "tools/commands.h"

namespace {

constexpr std::size_t MostChanges = 10'000'000;  // held at a time; an end may be far away

bool HasOwnEnd(const IStimulus &stimulus)
{
    SimpleString::CStr cancel;
    if (stimulus.GetCancelString(cancel))
        return true;
    const bool isPlain = dynamic_cast<const CStimulus *>(&stimulus) != nullptr;
    return (isPlain || stimulus.IsCustom()) && stimulus.GetRepeatRateInSimUnits() == 0;
}

// The next change later than `time`, -1 if there is none. Where the stimulus answers with a time that is not later,
// which a file finer than the simulator's tick can bring about, time goes on by one tick.
long long NextTime(IStimulus &stimulus, long long time)
{
    const long long next = stimulus.GetNextEventTime(time);
    if (next == -1 || next > time)
        return next;
    return time == std::numeric_limits<long long>::max() ? -1 : time + 1;
}

std::optional<std::string> ValueAt(IStimulus &stimulus, long long time)
{
    SimpleString::CStr value;
    if (!stimulus.GetValue(time, value))
        return std::nullopt;
    return std::string(value, static_cast<std::size_t>(value.GetLength()));
}

}  // namespace

std::vector<SChange> Walk(IStimulus &stimulus, std::optional<long long> until)
{
    const bool isCut = !until && !HasOwnEnd(stimulus);
    std::vector<SChange> changes;
    for (long long time = NextTime(stimulus, -1); time != -1; time = NextTime(stimulus, time)) {
        if ((until && time > *until) || (isCut && changes.size() == DefaultChanges))
            break;
        if (changes.size() == MostChanges)
            throw CRefusal("more than " + std::to_string(MostChanges) + " changes; give an earlier end with --until");
        changes.push_back({time, ValueAt(stimulus, time)});
    }
    return changes;
}
