#include "tools/exchange/coursebuilder.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/kestrin.h"
#include "tools/bench/benchplayer.h"
#include "tools/commandline.h"
#include "tools/exchange/recurrence.h"
#include "tools/play/formula.h"
#include "tools/quote.h"
#include "tools/writers/valuekind.h"
#include "tools/writers/valuetext.h"

namespace tesk {

namespace {

using Kestrin::ETypeKind;

bool IsBoolean(const Kestrin::KTypeInfo &type)
{
    return KindOf(type) == ETypeKind::Enumeration && std::string(type.GetTypeIdentifier()) == "boolean";
}

EShape ShapeOf(EValueKind kind)
{
    switch (kind) {
    case EValueKind::Bits: return EShape::Bits;
    case EValueKind::Integer: return EShape::Integer;
    case EValueKind::Real: return EShape::Real;
    default: return EShape::Other;
    }
}

// Bounds of a row of bits: those of its type, else as many bits as the widest value has.
void SetRange(SCourse &course)
{
    const Kestrin::KTypeInfo type(course.description.c_str());
    int direction = 0;
    course.isVector = type.GetArrayDimensionRanges(0, course.left, course.right, direction);
    if (course.isVector || course.width == 1)
        return;
    course.isVector = true;
    course.left = static_cast<int>(course.width) - 1;
}

SCourse CourseOf(STrace trace)
{
    SCourse course;
    const SValueKind values = KindOfValues(trace);
    const Kestrin::KTypeInfo type(trace.type.c_str());
    course.name = trace.NameInFile();
    course.description = trace.type;
    course.typeName = trace.type;
    course.shape = IsBoolean(type) ? EShape::Boolean : ShapeOf(values.kind);
    // A type with words of its own, of which only some are shown, is not told by them.
    if (KindOf(type) == ETypeKind::Enumeration && course.shape == EShape::Bits && !IsBitVectorType(trace.type)) {
        const std::string name = type.GetTypeIdentifier();
        if (name != "bit" && name != "std_logic" && name != "std_ulogic")
            course.shape = EShape::Other;
    }
    course.width = values.width;
    course.changes = std::move(trace.changes);
    if (course.shape == EShape::Bits)
        SetRange(course);
    return course;
}

// The traces that are written: of a row of bits the whole, of any other composite signal the innermost elements.
std::vector<STrace> WrittenTraces(std::vector<STrace> traces)
{
    std::vector<STrace> written;
    std::string row;  // of whose elements none is written
    for (std::size_t i = 0; i < traces.size(); ++i) {
        STrace &trace = traces[i];
        const std::string name = trace.NameInFile();
        if (!row.empty() && trace.IsElement() && name.starts_with(row))
            continue;
        row = IsBitVectorType(trace.type) ? name : "";
        const bool isInner = i + 1 == traces.size() || !traces[i + 1].IsElement() || !row.empty() ||
                             !traces[i + 1].NameInFile().starts_with(name);
        if (isInner)
            written.push_back(std::move(trace));
    }
    return written;
}

class CCourseBuilder {
public:
    CCourseBuilder(const SBench &bench, std::optional<long long> until, const SFormAbility &ability, CLosses &losses)
        : m_bench(bench), m_ability(ability), m_losses(losses)
    {
        m_courses.path = bench.path;
        m_courses.resolution = bench.resolution;
        m_courses.until = until ? until : bench.until;
    }

    SCourses Build()
    {
        const CSimulationRun run;
        std::vector<std::size_t> played;  // signals that are written change by change
        m_found.resize(m_bench.signals.size());
        for (std::size_t i = 0; i < m_found.size(); ++i) {
            if (!AddEndless(i))
                played.push_back(i);
        }
        AddPlayed(played);
        for (std::vector<SCourse> &courses : m_found)
            std::ranges::move(courses, std::back_inserter(m_courses.signals));
        std::set<std::string> names;
        for (const SCourse &course : m_courses.signals) {
            m_courses.end = std::max(m_courses.end, LastTick(course));
            if (!names.insert(course.name).second)
                m_losses.Refuse(course.name, "stands twice in the bench, once as an element");
        }
        m_courses.end = m_courses.until.value_or(m_courses.end);
        return std::move(m_courses);
    }

private:
    // @return false for a signal that is written change by change
    bool AddEndless(std::size_t index)
    try {
        const SBenchSignal &signal = m_bench.signals[index];
        const SRecurrence recurrence = FindRecurrence(m_bench, signal);
        if (m_ability.hasCounts && recurrence.count && AddCount(index, *recurrence.count))
            return true;
        const bool isSaid = recurrence.period && (m_ability.hasEndedLoops || !recurrence.period->end);
        if (m_ability.hasLoops && isSaid && AddLoop(index, *recurrence.period))
            return true;
        if (!recurrence.isEndless || m_courses.until)
            return false;
        m_losses.Refuse(signal.name,
                        "the stimulator goes on for ever, which is no loop here; tell the end with --until, "
                        "or with until in the bench");
        return true;
    } catch (const CRefusal &) {
        return false;  // is refused once more when it is played, and told
    }

    // Plays some of the bench. What cannot be played of it is told and left out.
    std::vector<STrace> Play(SBench part, std::optional<long long> until)
    {
        std::vector<SBenchFault> faults;
        {
            CBenchPlayer player(part, {0, until}, faults);
            for (const SBenchFault &fault : faults)
                m_losses.Fault(FaultLine(part, fault));
            if (player.CanPlay())
                return Walk(player);
        }
        const auto isFaulty = [&](const SBenchSignal &signal) {
            return std::ranges::find(faults, signal.place, &SBenchFault::place) != faults.end();
        };
        const std::size_t left = std::erase_if(part.signals, isFaulty);
        return left == 0 || part.signals.empty() ? std::vector<STrace>() : Play(std::move(part), until);
    }

    std::vector<STrace> Walk(CBenchPlayer &player)
    try {
        return WrittenTraces(player.Play().traces);
    } catch (const CRefusal &refusal) {
        m_losses.Refuse("", refusal.what());
        return {};
    }

    std::vector<STrace> Play(std::size_t index, std::optional<long long> until)
    {
        SBench one = m_bench;
        one.signals = {m_bench.signals[index]};
        one.replays.clear();
        one.until.reset();
        return Play(std::move(one), until);
    }

    // All in step, since some may share a counter.
    void AddPlayed(const std::vector<std::size_t> &played)
    {
        SBench part = m_bench;
        part.until = m_courses.until;
        part.signals.clear();
        for (const std::size_t index : played)
            part.signals.push_back(m_bench.signals[index]);
        if (part.signals.empty() && part.replays.empty())
            return;
        bool hasReplayed = false;
        for (STrace &trace : Play(std::move(part), m_courses.until)) {
            const auto owner = std::ranges::find(m_bench.signals, trace.signal, &SBenchSignal::name);
            SCourse course = CourseOf(std::move(trace));
            if (owner != m_bench.signals.end())
                Add(static_cast<std::size_t>(owner - m_bench.signals.begin()), std::move(course));
            else
                m_courses.signals.push_back(std::move(course));
            hasReplayed = hasReplayed || owner == m_bench.signals.end();
        }
        for (const SBenchReplay &replay : m_bench.replays)
            TellReplay(replay, hasReplayed);
    }

    void TellReplay(const SBenchReplay &replay, bool isPlayed)
    {
        const std::string name = "the replay of " + Quote(replay.file);
        if (!isPlayed)
            m_losses.Refuse("", name + " drives no signal that could be written; name each with a /custom formula");
        if (!replay.compare.empty())
            m_losses.Note("", name + " compares signals, which is left out");
    }

    void Add(std::size_t index, SCourse course)
    {
        const SBenchSignal &signal = m_bench.signals[index];
        course.strength = signal.strength;
        if (course.name == signal.name && !signal.typeName.empty())
            course.typeName = signal.typeName;
        m_found[index].push_back(std::move(course));
    }

    // A count too long to be a loop, or easier to read than one.
    bool AddCount(std::size_t index, const SCount &count)
    {
        std::vector<STrace> traces = Play(index, count.begin);
        if (traces.size() != 1)
            return false;
        SCourse course = CourseOf(std::move(traces[0]));
        if (course.changes.size() != 1 || (course.shape != EShape::Integer && course.shape != EShape::Bits) ||
            (course.shape == EShape::Bits && course.width != count.count.size()))
            return false;
        course.changes.clear();
        course.count = count;
        Add(index, std::move(course));
        return true;
    }

    // @return false if one of the elements does not come back as it was, or stands behind other changes where it may not
    bool AddLoop(std::size_t index, const SPeriod &period)
    {
        std::vector<SCourse> courses;
        for (STrace &trace : Play(index, period.begin + 2 * period.period - 1)) {
            SCourse course = CourseOf(std::move(trace));
            course.loop = TakeLoop(period, course.changes);
            const bool isSilent = !course.loop && course.changes.empty();
            if (!isSilent && (!course.loop || (!m_ability.hasLoopsBehindChanges && !course.changes.empty())))
                return false;
            courses.push_back(std::move(course));
        }
        for (SCourse &course : courses)
            Add(index, std::move(course));
        return true;
    }

    const SBench &m_bench;
    SFormAbility m_ability;
    CLosses &m_losses;
    SCourses m_courses;
    std::vector<std::vector<SCourse>> m_found;  // of each signal of the bench
};

}  // namespace

SCourses BuildCourses(const SBench &bench, std::optional<long long> until, const SFormAbility &ability, CLosses &losses)
{
    return CCourseBuilder(bench, until, ability, losses).Build();
}

}  // namespace tesk
