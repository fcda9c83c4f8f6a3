#include "tools/play/walk.h"

#include <algorithm>
#include <limits>
#include <string>
#include <utility>

#include "tools/commandline.h"

namespace {

constexpr std::size_t MostChanges = 10'000'000;  // held at a time; an end may be far away
constexpr std::size_t MostBytes = 256 << 20;     // of their values

bool HasOwnEnd(const IStimulus &stimulus)
{
    SimpleString::CStr cancel;
    if (stimulus.GetCancelString(cancel))
        return true;
    const bool isPlain = dynamic_cast<const CStimulus *>(&stimulus) != nullptr;
    return (isPlain || stimulus.IsCustom()) && stimulus.GetRepeatRateInSimUnits() == 0;
}

// Where a walk goes next on a stimulus.
struct SNext {
    long long time;       // -1 if there is no change any more
    bool isStep = false;  // a step of the walk's own: there need not be a change
};

// The next change later than `time`. Where the stimulus answers with a time that is not later, which a file finer than the
// simulator's tick can bring about, time goes on by one tick.
SNext NextTime(IStimulus &stimulus, long long time)
{
    const long long next = stimulus.GetNextEventTime(time);
    if (next == -1 || next > time)
        return {next};
    return time == std::numeric_limits<long long>::max() ? SNext{-1} : SNext{time + 1, true};
}

std::optional<std::string> ValueAt(IStimulus &stimulus, long long time)
{
    SimpleString::CStr value;
    if (!stimulus.GetValue(time, value))
        return std::nullopt;
    return std::string(value, static_cast<std::size_t>(value.GetLength()));
}

// The smallest time that is one; -1 if none is.
long long Earliest(const std::vector<SNext> &nexts)
{
    long long earliest = -1;
    for (const auto &[time, isStep] : nexts) {
        if (time != -1 && (earliest == -1 || time < earliest))
            earliest = time;
    }
    return earliest;
}

// Whether a value that a walk has come to by a step of its own is news.
bool IsNew(const std::optional<std::string> &value, const std::vector<SChange> &changes)
{
    return changes.empty() ? value.has_value() : changes.back().value != value;
}

// What a walk holds.
class CHeld {
public:
    // @throw CRefusal if it is more than it may be
    void Add(const SChange &change)
    {
        m_bytes += change.value ? change.value->size() : 0;
        if (++m_changes > MostChanges)
            throw CRefusal("more than " + std::to_string(MostChanges) + " changes; give an earlier end with --until");
        if (m_bytes > MostBytes)
            throw CRefusal("the values of the changes have more than " + std::to_string(MostBytes >> 20) +
                           " MiB; give an earlier end with --until");
    }

private:
    std::size_t m_changes = 0;
    std::size_t m_bytes = 0;
};

}  // namespace

std::vector<std::vector<SChange>> Walk(const std::vector<tesk::StimulusPtr> &stimuli, long long begin,
                                       std::optional<long long> until)
{
    const bool isCut = !until && !std::ranges::all_of(stimuli, HasOwnEnd, &tesk::StimulusPtr::operator*);
    std::vector<std::vector<SChange>> changes(stimuli.size());
    std::vector<SNext> next;
    for (std::size_t i = 0; i < stimuli.size(); ++i) {
        next.push_back(NextTime(*stimuli[i], -1));
        const bool isSilent = next[i].time == -1 || next[i].time > begin;  // until there, or for ever
        const std::optional<std::string> value = isSilent ? ValueAt(*stimuli[i], begin) : std::nullopt;
        if (value && !value->empty())
            changes[i].push_back({begin, value});
    }

    CHeld held;
    for (std::size_t times = 0; !isCut || times < DefaultChanges; ++times) {
        const long long time = Earliest(next);
        if (time == -1 || (until && time > *until))
            break;
        for (std::size_t i = 0; i < stimuli.size(); ++i) {
            if (next[i].time != time)
                continue;
            std::optional<std::string> value = ValueAt(*stimuli[i], time);
            if (next[i].isStep && !IsNew(value, changes[i]))
                continue;
            changes[i].push_back({time, std::move(value)});
            held.Add(changes[i].back());
        }
        for (std::size_t i = 0; i < stimuli.size(); ++i) {
            if (next[i].time == time)
                next[i] = NextTime(*stimuli[i], time);
        }
    }
    return changes;
}
