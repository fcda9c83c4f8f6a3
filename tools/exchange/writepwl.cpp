// The form pwl: independent voltage sources of SPICE, piecewise linear, one for each bit and each real.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/stdlogic.h"
#include "tools/exchange/forms.h"
#include "tools/exchange/hdltext.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace tesk {

namespace {

// What becomes of each letter of std_logic: a level, or M, the middle of both.
constexpr std::string_view LevelLetters = "MM01MM01M";

// A voltage from a tick on.
struct SLevel {
    long long ticks;
    double volts;
};

// Femtoseconds with the suffix of a scale that SPICE knows.
std::string SpiceTime(Int128 femtoseconds)
{
    constexpr std::string_view Suffixes = "fpnum";
    if (femtoseconds == 0)
        return "0";
    const auto unit = static_cast<std::size_t>(std::min(CoarsestWholeUnit(femtoseconds), 5));
    const auto count = static_cast<long long>(femtoseconds / UnitLength(static_cast<int>(unit)));
    return std::to_string(count) + (unit < Suffixes.size() ? std::string(1, Suffixes[unit]) : "");
}

// Names of nodes have letters, digits and "_", and letter case does not count.
std::string NodeName(const std::string &name, std::set<std::string> &taken)
{
    std::string node;
    for (const char c : name)
        node += IsBasicWord(std::string("_") + c) ? c : '_';
    const std::string wanted = node;
    const auto lower = [](std::string text) {
        std::ranges::transform(text, text.begin(),
                               [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
        return text;
    };
    for (int i = 2; !taken.insert(lower(node)).second; ++i)
        node = wanted + "_" + std::to_string(i);
    return node;
}

// Writes the sources of one signal.
class CPwlWriter {
public:
    CPwlWriter(std::ostream &out, const SCourses &courses, const SFormOptions &options, CLosses &losses)
        : m_out(out), m_courses(courses), m_options(options), m_losses(losses)
    {}

    void Write(const SCourse &course, const std::string &name)
    {
        m_out << "* " << OneLine(course.name) << '\n';
        if (course.shape != EShape::Bits || !course.isVector)
            return WriteSource(course, NodeName(name, m_taken), 0);
        const int step = course.left < course.right ? 1 : -1;
        for (std::size_t bit = 0; bit < course.width; ++bit) {
            const long long index = course.left + step * static_cast<long long>(bit);
            WriteSource(course, NodeName(name + "_" + std::to_string(index), m_taken), bit);
        }
    }

private:
    double Volts(const SCourse &course, const std::optional<std::string> &value, std::size_t bit, double before) const
    {
        if (course.shape == EShape::Real)
            return value ? std::stod(*value) : before;
        const double middle = (m_options.low + m_options.high) / 2;
        if (!value)
            return middle;
        if (course.shape == EShape::Boolean)
            return *value == "true" ? m_options.high : m_options.low;
        const std::size_t letter = StdLogicLetters.find(FullBits(course, *value)[bit]);
        switch (letter != StdLogicLetters.npos ? LevelLetters[letter] : 'M') {
        case '0': return m_options.low;
        case '1': return m_options.high;
        default: return middle;
        }
    }

    // Where the voltage changes; a change to what it is already is left out.
    void AddLevels(const SCourse &course, const std::vector<SChange> &changes, long long offset, std::size_t bit,
                   std::vector<SLevel> &levels) const
    {
        for (const SChange &change : changes) {
            const double volts = Volts(course, change.value, bit, levels.back().volts);
            if (levels.back().volts != volts)
                levels.push_back({change.ticks + offset, volts});
        }
    }

    void WriteSource(const SCourse &course, const std::string &node, std::size_t bit)
    {
        std::vector<SLevel> levels = {{0, Volts(course, AllChanges(course).front().value, bit, 0)}};
        AddLevels(course, course.changes, 0, bit, levels);
        std::string repeat;
        Int128 end = -1;
        if (course.loop) {
            // The second round begins with what the first one ends with, so it is what is repeated.
            const SLoop &loop = *course.loop;
            AddLevels(course, loop.changes, loop.begin, bit, levels);
            AddLevels(course, loop.changes, loop.begin + loop.period, bit, levels);
            m_mark = Femtoseconds(loop.begin + loop.period);
            end = Femtoseconds(loop.begin + 2 * loop.period);
            repeat = " r=" + SpiceTime(m_mark);
        } else {
            m_mark = -1;
        }
        WriteLine("V" + node + " " + node + " 0 PWL(" + Points(course, levels, end) + ")" + repeat);
    }

    Int128 Femtoseconds(long long ticks) const { return static_cast<Int128>(ticks) * m_courses.resolution; }

    // Corners: an edge begins where the value changes.
    std::string Points(const SCourse &course, const std::vector<SLevel> &levels, Int128 end)
    {
        std::string points = "0 " + Number(levels[0].volts);
        Int128 last = 0;
        const auto add = [&](Int128 time, double volts) {
            points += " " + SpiceTime(time) + " " + Number(volts);
            last = time;
        };
        for (std::size_t i = 1; i < levels.size(); ++i) {
            const Int128 time = Femtoseconds(levels[i].ticks);
            if (time < last)
                TellTooFast(course, levels[i].ticks);
            if (m_mark > last && m_mark < time)
                add(m_mark, levels[i - 1].volts);
            if (time > last)
                add(time, levels[i - 1].volts);
            add(time + m_options.rise, levels[i].volts);
        }
        if (m_mark > last)
            add(m_mark, levels.back().volts);
        if (end >= 0 && end < last)
            TellTooFast(course, course.loop->begin + 2 * course.loop->period);
        if (end > last)
            add(end, levels.back().volts);
        return points;
    }

    void TellTooFast(const SCourse &course, long long ticks)
    {
        m_losses.Refuse(course.name,
                        "at " + TickText(ticks, m_courses.resolution) +
                            " a change comes before the edge of the former is over; give a shorter --rise");
    }

    static std::string Number(double volts)
    {
        std::string text = RealLiteral(volts);
        return text.ends_with(".0") ? text.substr(0, text.size() - 2) : text;
    }

    // Lines that are long go on behind "+".
    void WriteLine(const std::string &text)
    {
        constexpr std::size_t Width = 100;
        std::size_t at = 0;
        while (text.size() - at > Width) {
            const std::size_t blank = text.rfind(' ', at + Width);
            if (blank == text.npos || blank <= at)
                break;
            m_out << (at == 0 ? "" : "+ ") << text.substr(at, blank - at) << '\n';
            at = blank + 1;
        }
        m_out << (at == 0 ? "" : "+ ") << text.substr(at) << '\n';
    }

    std::ostream &m_out;
    const SCourses &m_courses;
    const SFormOptions &m_options;
    CLosses &m_losses;
    std::set<std::string> m_taken;
    Int128 m_mark = -1;  // femtoseconds; a corner from which on is repeated
};

void TellLostVoltages(const SCourse &course, const SCourses &courses, CLosses &losses)
{
    constexpr const char *Middle = "the middle of both levels";
    const bool isReal = course.shape == EShape::Real;
    for (const SChange &change : AllChanges(course)) {
        const std::string time = TickText(change.ticks, courses.resolution);
        if (!change.value)
            losses.Weaken(course.name, "no value", time, isReal ? "the voltage before" : Middle);
        else if (isReal && !std::isfinite(std::stod(*change.value)))
            losses.Refuse(course.name, "a voltage is finite");
        if (!change.value || course.shape != EShape::Bits)
            continue;
        for (const char c : FullBits(course, *change.value)) {
            if (c != '0' && c != '1')
                losses.Weaken(course.name, std::string(1, c), time,
                              c == 'L'   ? "the low level"
                              : c == 'H' ? "the high level"
                                         : Middle);
        }
    }
}

// @return false for a signal that has no voltage at all
bool TellPwlLosses(const SCourse &course, const SCourses &courses, CLosses &losses)
{
    if (course.shape == EShape::Other || course.shape == EShape::Integer) {
        losses.Refuse(course.name, "it is no voltage; give it a type of bits or real");
        return false;
    }
    TellLostVoltages(course, courses, losses);
    if (course.strength != EStrength::Override)
        losses.Note(course.name, "its strength is left out; a voltage source always drives");
    return true;
}

}  // namespace

void WriteSpiceSources(std::ostream &out, const SCourses &courses, const SFormOptions &options, CLosses &losses)
{
    out << "* Written by tesk from " << OneLine(courses.path) << ".\n";
    const std::vector<std::string> names = PortNames(courses, false);
    CPwlWriter writer(out, courses, options, losses);
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (TellPwlLosses(courses.signals[i], courses, losses))
            writer.Write(courses.signals[i], names[i]);
    }
}

}  // namespace tesk
