// The form sv: a module of SystemVerilog (IEEE 1800) with an output for each signal.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/stdlogic.h"
#include "tools/exchange/forms.h"
#include "tools/exchange/hdltext.h"
#include "tools/exchange/reservedwords.h"
#include "tools/files/vcdtext.h"
#include "tools/quote.h"
#include "tools/writers/valuetext.h"

namespace tesk {

namespace {

// What is written for each letter of std_logic.
constexpr std::string_view VerilogLetters = "XX01ZX01X";

std::string Identifier(const std::string &name)
{
    if (IsBasicWord(name) && !IsVerilogWord(name))
        return name;
    std::string escaped = name.starts_with('\\') ? "" : "\\";
    for (const char c : name)
        escaped += c > ' ' && c < 0x7F ? c : '_';
    return escaped + ' ';
}

// Bits as a literal; hexadecimal where they are many and known.
std::string BitsLiteral(const std::string &bits)
{
    std::string letters;
    for (const char c : bits) {
        const std::size_t letter = StdLogicLetters.find(c);
        letters += letter != StdLogicLetters.npos ? VerilogLetters[letter] : 'X';
    }
    const bool isLong = letters.size() > 4 && letters.find_first_not_of("01") == letters.npos;
    std::string digits = isLong ? BitsInRadix(letters, ERadix::Hexadecimal) : letters;
    if (!isLong)
        std::ranges::replace(digits, 'X', 'x');
    std::ranges::replace(digits, 'Z', 'z');
    return std::to_string(bits.size()) + (isLong ? "'h" : "'b") + digits;
}

std::string RealValue(const std::string &value)
{
    const double number = std::stod(value);
    if (std::isfinite(number))
        return RealLiteral(number);
    return number > 0 ? "$bitstoreal(64'h7FF0000000000000)" : "$bitstoreal(64'hFFF0000000000000)";
}

std::string Delay(long long units)
{
    constexpr long long LongestPlain = 0x7FFFFFFF;
    return units <= LongestPlain ? "#" + std::to_string(units) : "#(64'd" + std::to_string(units) + ")";
}

class CSvProcess final : public IHdlProcess {
public:
    CSvProcess(std::ostream &out, const SCourse &course, std::string name, std::string counter, long long factor)
        : m_out(out), m_course(course), m_name(std::move(name)), m_counter(std::move(counter)), m_factor(factor)
    {}

    void Wait(long long ticks) override { m_wait += ticks * m_factor; }

    void Assign(const std::optional<std::string> &value) override
    {
        const std::string delay = m_wait != 0 ? Delay(m_wait) + " " : "";
        m_wait = 0;
        Line(delay + m_name + " <= " + Literal(value) + ";");
    }

    void BeginLoop(std::optional<long long> rounds) override
    {
        WriteWait();
        Line(rounds ? "repeat (64'd" + std::to_string(*rounds) + ") begin" : "forever begin");
        ++m_depth;
    }

    void EndLoop() override
    {
        WriteWait();
        --m_depth;
        Line("end");
    }

    void Step() override
    {
        WriteWait();
        Line(m_counter + " = " + m_counter + " + " + BitsLiteral(m_course.count->increment) + ";");
        Line(m_name + " <= " + m_counter + (m_course.count->isGray ? " ^ (" + m_counter + " >> 1);" : ";"));
    }

    void Declare()
    {
        if (!m_course.count)
            return;
        Line("logic [" + std::to_string(m_course.count->count.size() - 1) + ":0] " + m_counter + ";");
        Line(m_counter + " = " + BitsLiteral(m_course.count->count) + ";");
    }

private:
    void WriteWait()
    {
        if (m_wait != 0)
            Line(Delay(m_wait) + ";");
        m_wait = 0;
    }

    void Line(const std::string &text) { m_out << std::string(4 * m_depth, ' ') << text << '\n'; }

    std::string Literal(const std::optional<std::string> &value) const
    {
        switch (m_course.shape) {
        case EShape::Integer:
            if (!value)
                return std::to_string(m_course.width) + "'bz";
            return m_course.count ? "$signed(" + BitsLiteral(*value) + ")" : Number(*value);
        case EShape::Real: return value ? RealValue(*value) : "$bitstoreal(64'h7FF8000000000000)";
        case EShape::Boolean: return !value ? "1'bz" : *value == "true" ? "1'b1" : "1'b0";
        default: break;
        }
        return value ? BitsLiteral(FullBits(m_course, *value)) : std::to_string(m_course.width) + "'bz";
    }

    // The smallest number of 32 bits has no literal of its own.
    std::string Number(const std::string &value) const
    {
        const auto number = static_cast<unsigned long long>(std::stoll(value));
        return std::to_string(m_course.width) + "'sh" +
               BitsInRadix(VcdBits(number, static_cast<int>(m_course.width)), ERadix::Hexadecimal);
    }

    std::ostream &m_out;
    const SCourse &m_course;
    std::string m_name;
    std::string m_counter;  // a name that no port has
    long long m_factor;     // units of time in a tick
    long long m_wait = 0;   // units of time not written yet
    std::size_t m_depth = 2;
};

std::string TypeOf(const SCourse &course)
{
    switch (course.shape) {
    case EShape::Integer: return course.width == 32 ? "integer" : "logic signed [63:0]";
    case EShape::Real: return "real";
    default: break;
    }
    const std::string range = "[" + std::to_string(course.left) + ":" + std::to_string(course.right) + "]";
    return course.isVector ? "logic " + range : "logic";
}

void TellLosses(const SCourse &course, const SCourses &courses, CLosses &losses)
{
    const SVcdTimeScale scale = VcdTimeScale(courses.resolution);
    if (LastTick(course) > std::numeric_limits<long long>::max() / scale.factor)
        losses.Refuse(course.name, "its times are beyond those of sv");
    if (course.shape == EShape::Other)
        losses.Refuse(course.name, "its values are words, which have no place in sv; give it a type of bits, integers "
                                   "or reals");
    TellLostLetters(course, courses.resolution, VerilogLetters, "", losses);
    if (course.strength != EStrength::Override)
        losses.Note(course.name, "its strength is left out; how an output drives is up to what it is connected with");
}

void WritePorts(std::ostream &out, const SCourses &courses, const std::vector<std::string> &names)
{
    for (std::size_t i = 0; i < names.size(); ++i) {
        const SCourse &course = courses.signals[i];
        // With a value to begin with a real is a variable for Icarus Verilog, too.
        out << "    output " << TypeOf(course) << ' ' << names[i] << (course.shape == EShape::Real ? " = 0.0" : "")
            << (i + 1 < names.size() ? "," : "") << "  // " << OneLine(course.name)
            << (course.shape == EShape::Boolean ? ", 1 where it is true" : "") << '\n';
    }
}

}  // namespace

void WriteSystemVerilog(std::ostream &out, const SCourses &courses, const SFormOptions &options, CLosses &losses)
{
    for (const SCourse &course : courses.signals)
        TellLosses(course, courses, losses);
    const SVcdTimeScale scale = VcdTimeScale(courses.resolution);
    std::vector<std::string> names = PortNames(courses, true);
    const std::string counter = FreeName("next", names);
    for (std::string &name : names)
        name = Identifier(name);
    out << "// Written by tesk from " << OneLine(courses.path) << ".\nmodule " << Identifier(options.name) << " (\n";
    WritePorts(out, courses, names);
    out << ");\n    timeunit " << scale.text << ";\n    timeprecision " << scale.text
        << ";\n\n    // All change at once, whatever the order of the processes. verilator lint_off INITIALDLY\n";
    for (std::size_t i = 0; i < names.size(); ++i) {
        const SCourse &course = courses.signals[i];
        if (course.shape == EShape::Other)
            continue;
        CSvProcess process(out, course, names[i], counter, scale.factor);
        out << "\n    initial begin\n";
        process.Declare();
        WriteProcess(course, process);
        out << "    end\n";
    }
    out << "endmodule\n";
}

}  // namespace tesk
