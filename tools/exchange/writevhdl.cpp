// The form vhdl: an entity (IEEE 1076-2008) with an output for each signal.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/stdlogic.h"
#include "platform/kestrin.h"
#include "tools/exchange/forms.h"
#include "tools/exchange/hdltext.h"
#include "tools/exchange/reservedwords.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace tesk {

namespace {

// What is written for each letter of std_logic where the type is bit.
constexpr std::string_view BitLetters = "000100010";
constexpr const char *Former = "the value before";

std::string ExtendedName(const std::string &name)
{
    const bool isBasic = IsBasicWord(name) && !IsVhdlWord(name) && !name.starts_with('_') && !name.ends_with('_') &&
                         name.find("__") == name.npos;
    if (isBasic)
        return name;
    std::string extended = "\\";
    for (const char c : name.substr(name.starts_with('\\') ? 1 : 0))
        extended += c == '\\' || c < ' ' || c == 0x7F ? '_' : c;
    return extended + '\\';
}

std::string LowerName(const char *text)
{
    std::string name = text;
    std::ranges::transform(name, name.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return name.substr(0, name.find('('));
}

// The name of the type, without its range.
std::string TypeMark(const SCourse &course)
{
    const Kestrin::KTypeInfo type(course.description.c_str());
    const std::string name = LowerName(type.GetTypeIdentifier());
    switch (course.shape) {
    case EShape::Integer: return name == "natural" || name == "positive" ? name : "integer";
    case EShape::Real: return "real";
    case EShape::Boolean: return "boolean";
    default: break;
    }
    if (!course.isVector)
        return name == "bit" || name == "std_ulogic" ? name : "std_logic";
    const Kestrin::KTypeInfo *element = type.GetArrayElementKTypeInfo();
    if (element != nullptr && LowerName(element->GetTypeIdentifier()) == "bit")
        return "bit_vector";
    return name == "signed" || name == "unsigned" || name == "std_ulogic_vector" ? name : "std_logic_vector";
}

bool IsOfBits(const std::string &mark)
{
    return mark.starts_with("bit");
}

std::string RangeOf(const SCourse &course)
{
    if (course.shape != EShape::Bits || !course.isVector)
        return {};
    const bool isUpward = course.left < course.right;
    return "(" + std::to_string(course.left) + (isUpward ? " to " : " downto ") + std::to_string(course.right) + ")";
}

class CVhdlProcess final : public IHdlProcess {
public:
    CVhdlProcess(std::ostream &out, const SCourse &course, std::string name, std::string counter, long long resolution)
        : m_out(out), m_course(course), m_name(std::move(name)), m_counter(std::move(counter)),
          m_resolution(resolution), m_mark(TypeMark(course))
    {}

    void Wait(long long ticks) override
    {
        m_now += ticks;
        Line("wait for " + Time(ticks) + ";");
    }

    void Assign(const std::optional<std::string> &value) override
    {
        const std::string literal = Literal(value);
        if (!literal.empty())
            Line(m_name + " <= " + literal + ";");
    }

    void BeginLoop(std::optional<long long> rounds) override
    {
        m_isEndless = !rounds;
        m_loopBegin = m_now;
        m_rounds = rounds.value_or(0);
        // How long a round is is known at its end; what stands in it is kept until then.
        m_head.swap(m_lines);
        ++m_depth;
    }

    void EndLoop() override
    {
        --m_depth;
        m_head.swap(m_lines);
        if (m_isEndless)
            Line("loop");
        else
            Line("while now < " + Time(m_loopBegin + m_rounds * (m_now - m_loopBegin)) + " loop");
        m_lines.insert(m_lines.end(), m_head.begin(), m_head.end());
        Line("end loop;");
    }

    void Step() override
    {
        Line(m_counter + " := " + m_counter + " + unsigned'(\"" + m_course.count->increment + "\");");
        const std::string shown =
            m_course.count->isGray ? m_counter + " xor shift_right(" + m_counter + ", 1)" : m_counter;
        Line(m_name + " <= " + Converted(shown) + ";");
    }

    void Write()
    {
        if (!m_isEndless)
            Line("wait;");
        m_out << "\n    process\n";
        if (m_course.count)
            m_out << "        variable " << m_counter << " : unsigned(" << m_course.count->count.size() - 1
                  << " downto 0) := \"" << m_course.count->count << "\";\n";
        m_out << "    begin\n";
        for (const std::string &line : m_lines)
            m_out << line;
        m_out << "    end process;\n";
    }

private:
    void Line(const std::string &text) { m_lines.push_back(std::string(4 * m_depth, ' ') + text + '\n'); }

    std::string Time(long long ticks) const
    {
        std::string text = TickText(ticks, m_resolution);
        text.insert(std::min(text.find_first_not_of("0123456789"), text.size()), " ");
        return text;
    }

    // What an unsigned number is assigned as.
    std::string Converted(const std::string &number) const
    {
        if (m_mark == "unsigned")
            return number;
        if (IsOfBits(m_mark))
            return "to_bitvector(std_logic_vector(" + number + "))";
        const bool isInteger = m_course.shape == EShape::Integer;
        return isInteger ? "to_integer(signed(" + number + "))" : m_mark + "(" + number + ")";
    }

    std::string Literal(const std::optional<std::string> &value) const
    {
        switch (m_course.shape) {
        case EShape::Integer:
            if (m_course.count && value)
                return Converted("unsigned'(\"" + *value + "\")");
            return value.value_or("");
        case EShape::Real: return value ? RealLiteral(std::stod(*value)) : "";
        case EShape::Boolean: return value.value_or("");
        default: return BitsLiteral(value);
        }
    }

    std::string BitsLiteral(const std::optional<std::string> &value) const
    {
        if (!value && IsOfBits(m_mark))
            return {};
        std::string bits = value ? FullBits(m_course, *value) : std::string(m_course.width, 'Z');
        for (char &c : bits) {
            if (IsOfBits(m_mark))
                c = BitLetters[std::min(StdLogicLetters.find(c), BitLetters.size() - 1)];
        }
        const char quote = m_course.isVector ? '"' : '\'';
        return quote + bits + quote;
    }

    std::ostream &m_out;
    const SCourse &m_course;
    std::string m_name;
    std::string m_counter;  // a name that no port has
    long long m_resolution;
    std::string m_mark;
    std::size_t m_depth = 2;
    long long m_now = 0;  // ticks
    bool m_isEndless = false;
    long long m_loopBegin = 0, m_rounds = 0;
    std::vector<std::string> m_lines, m_head;
};

void TellVhdlLosses(const SCourse &course, const SCourses &courses, CLosses &losses)
{
    const std::string mark = TypeMark(course);
    if (course.shape == EShape::Other)
        losses.Refuse(course.name,
                      "its values are words of a type that vhdl does not know by itself; give it a type of "
                      "bits, integers, reals or boolean");
    if (course.shape == EShape::Integer && course.width > 32)
        losses.Refuse(course.name, "its numbers have more than the 32 bits of an integer of vhdl");
    if (LastTick(course) > std::numeric_limits<long long>::max() / courses.resolution)
        losses.Refuse(course.name, "its times are beyond those of vhdl, which has 9.2e18 fs, about 2.5 hr");
    const bool hasUndriven = course.shape == EShape::Bits && !IsOfBits(mark);
    TellLostLetters(course, courses.resolution, IsOfBits(mark) ? BitLetters : StdLogicLetters,
                    hasUndriven ? "" : Former, losses);
    if (course.shape == EShape::Real && std::ranges::any_of(AllChanges(course), [](const SChange &change) {
            return change.value && !std::isfinite(std::stod(*change.value));
        }))
        losses.Refuse(course.name, "a real of vhdl is finite");
    if (course.strength != EStrength::Override)
        losses.Note(course.name, "its strength is left out; how an output drives is up to what it is connected with");
}

}  // namespace

void WriteVhdl(std::ostream &out, const SCourses &courses, const SFormOptions &options, CLosses &losses)
{
    for (const SCourse &course : courses.signals)
        TellVhdlLosses(course, courses, losses);
    std::vector<std::string> names = PortNames(courses, false);
    for (std::string &name : names)
        name = ExtendedName(name);
    const std::string counter = FreeName("count_now", names);
    const std::string entity = ExtendedName(options.name);
    out << "-- Written by tesk from " << OneLine(courses.path)
        << ".\nlibrary ieee;\nuse ieee.std_logic_1164.all;\nuse ieee.numeric_std.all;\n\nentity " << entity
        << " is\n    port (\n";
    for (std::size_t i = 0; i < names.size(); ++i) {
        const SCourse &course = courses.signals[i];
        out << "        " << names[i] << " : out " << TypeMark(course) << RangeOf(course)
            << (i + 1 < names.size() ? ";" : "") << "  -- " << OneLine(course.name) << '\n';
    }
    out << "    );\nend entity;\n\narchitecture waves of " << entity << " is\nbegin\n";
    for (std::size_t i = 0; i < names.size(); ++i) {
        const SCourse &course = courses.signals[i];
        if (course.shape == EShape::Other)
            continue;
        CVhdlProcess process(out, course, names[i], counter, courses.resolution);
        WriteProcess(course, process);
        process.Write();
    }
    out << "end architecture;\n";
}

}  // namespace tesk
