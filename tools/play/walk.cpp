#include "tools/play/walk.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <queue>
#include <string>
#include <utility>

#include "tools/commandline.h"

namespace tesk {

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

// Whether a value that a walk has come to by a step of its own is news.
bool IsNew(const std::optional<std::string> &value, const std::vector<SChange> &changes)
{
    return changes.empty() ? value.has_value() : changes.back().value != value;
}

// A little behind the last change, so that a picture shows what it led to.
long long EndBehind(long long from, long long last)
{
    const long long margin = std::max((last - from) / 16, 1LL);
    return last + std::min(margin, std::numeric_limits<long long>::max() - last);
}

// A group as it is walked.
struct SGroup {
    long long begin;
    long long from;
    std::optional<long long> limit;
    bool isEndless;          // without an end that is asked for it would go on
    std::size_t times = 0;   // at which it was visited where it is shown
    long long visited = -1;  // the last of these
};

// A stimulus as it is walked.
struct SStimulus {
    IStimulus *stimulus;
    std::size_t group;
    bool isStep = false;       // the next time is a step of the walk's own: there need not be a change
    std::size_t ownSteps = 0;  // without a later time
};

class CWalker {
public:
    CWalker(std::span<const SWalkGroup> groups, const SWalkStretch &stretch, const CChangeSink &sink);

    SWalked Walk();

private:
    using CNext = std::pair<long long, std::size_t>;  // time and stimulus

    void Begin(std::size_t index);
    void JumpIn(std::size_t index);
    void Visit(long long time);
    bool IsOver(long long time);
    long long NextTime(std::size_t index, long long time);
    void Push(std::size_t index, long long time);
    void Record(std::size_t index, long long time, bool isStep = false);

    std::vector<SGroup> m_groups;
    std::vector<SStimulus> m_stimuli;
    SWalkStretch m_stretch;
    CChangeSink m_sink;  // empty if all changes are kept
    CChangeRecorder m_recorder;
    std::priority_queue<CNext, std::vector<CNext>, std::greater<>> m_next;
    std::vector<std::size_t> m_due;  // stimuli that change at one time
    std::size_t m_ending = 0;        // stimuli in the queue of groups that have an end
    long long m_ended = 0;           // the last change of such a group
    bool m_hasEndless = false;
    bool m_isFull = false;  // an endless group has changed often enough
    SWalked m_walked;
};

CWalker::CWalker(std::span<const SWalkGroup> groups, const SWalkStretch &stretch, const CChangeSink &sink)
    : m_stretch(stretch), m_ended(stretch.ended)
{
    for (const SWalkGroup &group : groups) {
        const bool isEndless =
            !stretch.until && !std::ranges::all_of(group.stimuli, HasOwnEnd, &StimulusPtr::operator*);
        m_hasEndless = m_hasEndless || isEndless;
        m_groups.push_back({group.begin, std::max(stretch.from, group.begin), group.limit, isEndless});
        for (const StimulusPtr &stimulus : group.stimuli)
            m_stimuli.push_back({stimulus.get(), m_groups.size() - 1});
    }
    m_walked.changes.resize(m_stimuli.size());
    if (m_stimuli.size() == 1)
        m_sink = sink;
}

// The next change later than `time`. Where the stimulus answers with a time that is not later, which a file finer than the
// simulator's tick can bring about, time goes on by one tick.
long long CWalker::NextTime(std::size_t index, long long time)
{
    SStimulus &walked = m_stimuli[index];
    const long long next = walked.stimulus->GetNextEventTime(time);
    walked.isStep = next != -1 && next <= time;
    if (!walked.isStep) {
        walked.ownSteps = 0;
        return next;
    }
    if (++walked.ownSteps > MostSteps)
        throw CRefusal("the stimulus names no later time; give an earlier end with --until, or a coarser --res");
    return time == std::numeric_limits<long long>::max() ? -1 : time + 1;
}

void CWalker::Push(std::size_t index, long long time)
{
    const SGroup &group = m_groups[m_stimuli[index].group];
    if (time == -1 || (group.limit && time > *group.limit) || (m_stretch.until && time > *m_stretch.until))
        return;
    m_next.emplace(time, index);
    m_ending += group.isEndless ? 0 : 1;
}

void CWalker::Record(std::size_t index, long long time, bool isStep)
{
    std::vector<SChange> &changes = m_walked.changes[index];
    std::optional<std::string> value = ValueAt(*m_stimuli[index].stimulus, time);
    const SGroup &group = m_groups[m_stimuli[index].group];
    if (!isStep || IsNew(value, changes))
        m_recorder.Add(changes, {time, std::move(value)}, group.from);
    if (!group.isEndless)
        m_ended = std::max(m_ended, time);
}

void CWalker::Begin(std::size_t index)
{
    const long long begin = m_groups[m_stimuli[index].group].begin;
    const long long next = NextTime(index, -1);
    const bool isSilent = next == -1 || next > begin;  // until there, or for ever
    const std::optional<std::string> value = isSilent ? ValueAt(*m_stimuli[index].stimulus, begin) : std::nullopt;
    if (value && !value->empty())
        Record(index, begin);
    Push(index, next);
}

// Begins where the shown stretch does.
void CWalker::JumpIn(std::size_t index)
{
    const long long from = m_groups[m_stimuli[index].group].from;
    const bool isChange = NextTime(index, from - 1) == from;
    const std::optional<std::string> value = ValueAt(*m_stimuli[index].stimulus, from);
    if (isChange || (value && !value->empty()))
        Record(index, from);
    Push(index, NextTime(index, from));
}

// Whether the walk, if nobody has told its end, leaves the stimuli that go on before this time.
bool CWalker::IsOver(long long time)
{
    if (!m_hasEndless || m_ending > 0)
        return false;
    if (m_ended > m_stretch.from) {
        m_walked.end = EndBehind(m_stretch.from, m_ended);
        return time > *m_walked.end;
    }
    m_walked.isCut = m_isFull;
    return m_isFull;
}

// All that changes at a time: first what it shows, then when it changes next.
void CWalker::Visit(long long time)
{
    m_due.clear();
    for (; !m_next.empty() && m_next.top().first == time; m_next.pop())
        m_due.push_back(m_next.top().second);
    for (const std::size_t index : m_due) {
        SGroup &group = m_groups[m_stimuli[index].group];
        group.times += time >= group.from && group.visited != time ? 1 : 0;
        group.visited = time;
        m_isFull = m_isFull || (group.isEndless && group.times == DefaultChanges);
        m_ending -= group.isEndless ? 0 : 1;
        Record(index, time, m_stimuli[index].isStep);
    }
    for (const std::size_t index : m_due)
        Push(index, NextTime(index, time));
}

SWalked CWalker::Walk()
{
    for (std::size_t i = 0; i < m_stimuli.size(); ++i) {
        const SGroup &group = m_groups[m_stimuli[i].group];
        if (group.from > group.begin && AnswersForAnyTime(*m_stimuli[i].stimulus))
            JumpIn(i);
        else
            Begin(i);
    }
    std::size_t passed = 0;
    while (!m_next.empty()) {
        const long long time = m_next.top().first;
        if (IsOver(time))
            break;
        Visit(time);
        if (m_sink && m_recorder.IsFull())
            m_recorder.Drain(m_walked.changes.front(), m_sink);
        if (time < m_stretch.from && ++passed > MostSteps)
            throw CRefusal("more than " + std::to_string(MostSteps) + " changes before --from; give an earlier time");
    }
    return std::move(m_walked);
}

}  // namespace

SWalked Walk(std::span<const SWalkGroup> groups, const SWalkStretch &stretch, const CChangeSink &sink)
{
    return CWalker(groups, stretch, sink).Walk();
}

}  // namespace tesk
