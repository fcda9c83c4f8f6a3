// The forms force and add_force: scripts of the simulators that know these commands.
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/exchange/forms.h"
#include "tools/exchange/simpath.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace tesk {

namespace {

// One command for each signal. What the forms differ in is up to the derived classes.
class CForceWriter {
public:
    CForceWriter(std::ostream &out, const SCourses &courses, CLosses &losses)
        : m_out(out), m_courses(courses), m_losses(losses)
    {}
    virtual ~CForceWriter() = default;

    void Write()
    {
        m_out << "# Written by tesk from " << OneLine(m_courses.path) << ".\n# tesk: resolution "
              << TickText(1, m_courses.resolution) << '\n';
        if (m_courses.until)
            m_out << "# tesk: until " << TickText(*m_courses.until, m_courses.resolution) << '\n';
        for (const SCourse &course : m_courses.signals)
            WriteSignal(course);
    }

protected:
    struct SForce {
        std::string path;  // a word
        std::vector<SChange> events;
        std::string repeat, cancel;  // empty for none
    };

    /// A command, as far as the form has words for it.
    virtual void WriteCommand(const SCourse &course, const SForce &force) = 0;

    virtual std::string Time(long long ticks) const { return TickText(ticks, m_courses.resolution); }

    std::ostream &m_out;
    const SCourses &m_courses;
    CLosses &m_losses;

private:
    void WriteSignal(const SCourse &course)
    {
        const auto path = SimulatorPath(course.name);
        const auto word = path ? TclWord(*path) : std::nullopt;
        if (!word)
            return m_losses.Refuse(course.name, "the name cannot be a path with / between scopes");
        SForce force{*word, {}, {}, {}};
        TakeEvents(course, force);
        if (force.events.empty())
            return m_losses.Note(course.name, "it never has a value, and no force");
        if (!course.typeName.empty())
            m_out << "# tesk: type " << *path << ' ' << course.typeName << '\n';
        WriteCommand(course, force);
    }

    void TakeEvents(const SCourse &course, SForce &force)
    {
        AddEvents(course, course.changes, 0, force);
        if (course.loop) {
            AddEvents(course, course.loop->changes, course.loop->begin, force);
            force.repeat = Time(course.loop->period);
            force.cancel = course.loop->end ? Time(*course.loop->end) : "";
        } else if (!force.events.empty() && !course.changes.back().value) {
            force.cancel = Time(course.changes.back().ticks);
        }
    }

    // A value that is none can end a force only.
    void AddEvents(const SCourse &course, const std::vector<SChange> &changes, long long begin, SForce &force)
    {
        for (std::size_t i = 0; i < changes.size(); ++i) {
            const SChange event{changes[i].ticks + begin, changes[i].value};
            const bool isLast = i + 1 == changes.size() && !course.loop;
            if (event.value)
                AddValue(course, event, force);
            else if (!force.events.empty() && !isLast)
                m_losses.Weaken(course.name, "no value in between", TickText(event.ticks, m_courses.resolution),
                                "the value before");
        }
    }

    void AddValue(const SCourse &course, SChange event, SForce &force)
    {
        if (course.shape == EShape::Bits)
            event.value = FullBits(course, *event.value);
        if (TclWord(*event.value) != event.value)
            return m_losses.Refuse(course.name, "the value " + Quote(*event.value) + " is no word of a force");
        force.events.push_back(std::move(event));
    }
};

class CQuestaWriter final : public CForceWriter {
public:
    using CForceWriter::CForceWriter;

private:
    void WriteCommand(const SCourse &course, const SForce &force) override
    {
        constexpr const char *Strengths[] = {"-freeze", "-deposit", "-drive"};
        m_out << "force " << Strengths[static_cast<int>(course.strength)] << ' ' << force.path;
        const char *between = " ";
        for (const SChange &event : force.events) {
            m_out << between << *event.value << ' ' << Time(event.ticks);
            between = ", ";
        }
        if (!force.repeat.empty())
            m_out << " -repeat " << force.repeat;
        if (!force.cancel.empty())
            m_out << " -cancel " << force.cancel;
        m_out << '\n';
    }
};

class CVivadoWriter final : public CForceWriter {
public:
    using CForceWriter::CForceWriter;

private:
    void WriteCommand(const SCourse &course, const SForce &force) override
    {
        if (course.strength != EStrength::Override)
            m_losses.Weaken(course.name,
                            course.strength == EStrength::Deposit ? "the strength deposit" : "the strength drive", "",
                            "a force");
        m_out << "add_force " << force.path;
        if (course.shape == EShape::Bits)
            m_out << " -radix bin";
        if (course.shape == EShape::Integer)
            m_out << " -radix dec";
        for (const SChange &event : force.events)
            m_out << " {" << *event.value << ' ' << Time(event.ticks) << '}';
        if (!force.repeat.empty())
            m_out << " -repeat_every " << force.repeat;
        if (!force.cancel.empty())
            m_out << " -cancel_after " << force.cancel;
        m_out << '\n';
    }

    // Its seconds have another name.
    std::string Time(long long ticks) const override
    {
        std::string text = CForceWriter::Time(ticks);
        const std::size_t seconds = text.find("sec");
        return seconds != text.npos ? text.substr(0, seconds) + "s" : text;
    }
};

}  // namespace

void WriteQuestaForces(std::ostream &out, const SCourses &courses, const SFormOptions &, CLosses &losses)
{
    CQuestaWriter(out, courses, losses).Write();
}

void WriteVivadoForces(std::ostream &out, const SCourses &courses, const SFormOptions &, CLosses &losses)
{
    CVivadoWriter(out, courses, losses).Write();
}

}  // namespace tesk
