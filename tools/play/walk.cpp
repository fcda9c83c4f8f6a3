#include "tools/play/walk.h"

#include <algorithm>
#include <limits>
#include <string>
#include <utility>

#include "tools/commandline.h"

namespace {

constexpr std::size_t MostSteps = 10'000'000;  // passed over, or without a later time, one after the other

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

// Whether it can be asked for any time, without the times before.
bool AnswersForAnyTime(const IStimulus &stimulus)
{
    return dynamic_cast<const CStimulus *>(&stimulus) != nullptr || stimulus.IsCustom();
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

class CWalker {
public:
    CWalker(const std::vector<tesk::StimulusPtr> &stimuli, const tesk::SWalkTimes &times, const tesk::CChangeSink &sink)
        : m_stimuli(stimuli), m_times(times), m_recorder(times),
          m_sink(stimuli.size() == 1 ? sink : tesk::CChangeSink())
    {
        m_walked.changes.resize(stimuli.size());
        m_isCut = !times.until && !std::ranges::all_of(stimuli, HasOwnEnd, &tesk::StimulusPtr::operator*);
    }

    SWalked Walk(std::optional<long long> limit);

private:
    void Begin();
    void JumpIn();
    SNext NextTime(std::size_t stimulus, long long time);
    void Record(std::size_t stimulus, long long time, bool isStep = false);

    const std::vector<tesk::StimulusPtr> &m_stimuli;
    tesk::SWalkTimes m_times;
    tesk::CChangeRecorder m_recorder;
    tesk::CChangeSink m_sink;  // empty if all changes are kept
    bool m_isCut;
    SWalked m_walked;
    std::vector<SNext> m_next;
    std::size_t m_ownSteps = 0;  // without a later time
};

// The next change later than `time`. Where the stimulus answers with a time that is not later, which a file finer than the
// simulator's tick can bring about, time goes on by one tick.
SNext CWalker::NextTime(std::size_t stimulus, long long time)
{
    const long long next = m_stimuli[stimulus]->GetNextEventTime(time);
    if (next == -1 || next > time) {
        m_ownSteps = 0;
        return {next};
    }
    if (++m_ownSteps > MostSteps)
        throw CRefusal("the stimulus names no later time; give an earlier end with --until, or a coarser --res");
    return time == std::numeric_limits<long long>::max() ? SNext{-1} : SNext{time + 1, true};
}

void CWalker::Record(std::size_t stimulus, long long time, bool isStep)
{
    std::vector<SChange> &changes = m_walked.changes[stimulus];
    std::optional<std::string> value = ValueAt(*m_stimuli[stimulus], time);
    if (!isStep || IsNew(value, changes))
        m_recorder.Add(changes, {time, std::move(value)});
}

void CWalker::Begin()
{
    for (std::size_t i = 0; i < m_stimuli.size(); ++i) {
        m_next.push_back(NextTime(i, -1));
        const bool isSilent = m_next[i].time == -1 || m_next[i].time > m_times.begin;  // until there, or for ever
        const std::optional<std::string> value = isSilent ? ValueAt(*m_stimuli[i], m_times.begin) : std::nullopt;
        if (value && !value->empty())
            Record(i, m_times.begin);
    }
}

// Begins where the shown stretch does.
void CWalker::JumpIn()
{
    for (std::size_t i = 0; i < m_stimuli.size(); ++i) {
        const bool isChange = NextTime(i, m_times.from - 1).time == m_times.from;
        const std::optional<std::string> value = ValueAt(*m_stimuli[i], m_times.from);
        if (isChange || (value && !value->empty()))
            Record(i, m_times.from);
        m_next.push_back(NextTime(i, m_times.from));
    }
}

SWalked CWalker::Walk(std::optional<long long> limit)
{
    const bool canJump = m_times.from > m_times.begin &&
                         std::ranges::all_of(m_stimuli, AnswersForAnyTime, &tesk::StimulusPtr::operator*);
    if (canJump)
        JumpIn();
    else
        Begin();
    std::size_t passed = 0;
    for (std::size_t times = 0;;) {
        const long long time = Earliest(m_next);
        if (time == -1 || (m_times.until && time > *m_times.until))
            break;
        const bool isBeyond = limit && time > *limit;
        m_walked.isCut = m_isCut && times == DefaultChanges;
        if (isBeyond || m_walked.isCut)
            break;
        for (std::size_t i = 0; i < m_stimuli.size(); ++i) {
            if (m_next[i].time == time)
                Record(i, time, m_next[i].isStep);
        }
        for (std::size_t i = 0; i < m_stimuli.size(); ++i) {
            if (m_next[i].time == time)
                m_next[i] = NextTime(i, time);
        }
        if (m_sink && m_recorder.IsFull())
            m_recorder.Drain(m_walked.changes.front(), m_sink);
        if (time >= m_times.from)
            ++times;
        else if (++passed > MostSteps)
            throw CRefusal("more than " + std::to_string(MostSteps) + " changes before --from; give an earlier time");
    }
    return std::move(m_walked);
}

}  // namespace

SWalked Walk(const std::vector<tesk::StimulusPtr> &stimuli, const tesk::SWalkTimes &times,
             std::optional<long long> limit, const tesk::CChangeSink &sink)
{
    return CWalker(stimuli, times, sink).Walk(limit);
}
