// The format VCD.
#include "tools/writers/writers.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/files/vcdtext.h"

namespace {

enum class EKind { Bits, Integer, Real, Text };

struct SVariable {
    EKind kind;
    std::size_t width;
    std::string code;
};

// The 4-state letter of a std_logic value, 0 for any other character.
char FourState(char c)
{
    switch (c) {
    case '0':
    case 'L':
    case 'l': return '0';
    case '1':
    case 'H':
    case 'h': return '1';
    case 'Z':
    case 'z': return 'z';
    case 'X':
    case 'x':
    case 'U':
    case 'u':
    case 'W':
    case 'w':
    case '-': return 'x';
    default: return 0;
    }
}

bool IsBits(const std::string &value)
{
    return !value.empty() && std::ranges::all_of(value, [](char c) { return FourState(c) != 0; });
}

template <typename T>
bool IsNumber(const std::string &value)
{
    T number;
    const char *end = value.data() + value.size();
    const auto result = std::from_chars(value.data(), end, number);
    return result.ec == std::errc() && result.ptr == end;
}

bool AllValues(const STrace &trace, bool (*test)(const std::string &))
{
    return std::ranges::all_of(trace.changes,
                               [test](const SChange &change) { return !change.value || test(*change.value); });
}

SVariable Describe(const STrace &trace, std::size_t index)
{
    const std::string code = VcdCode(index);
    if (AllValues(trace, IsBits)) {
        std::size_t width = 1;
        for (const SChange &change : trace.changes)
            width = std::max(width, change.value.value_or("").size());
        return {EKind::Bits, width, code};
    }
    if (AllValues(trace, IsNumber<long long>))
        return {EKind::Integer, 64, code};
    if (AllValues(trace, IsNumber<double>))
        return {EKind::Real, 64, code};
    return {EKind::Text, 1, code};
}

const char *TypeName(EKind kind)
{
    switch (kind) {
    case EKind::Bits: return "wire";
    case EKind::Integer: return "integer";
    case EKind::Real: return "real";
    default: return "string";
    }
}

std::string Letters(const std::string &value)
{
    std::string letters;
    for (const char c : value)
        letters += FourState(c);
    return letters;
}

// A change to a value that may have many letters.
std::string LongChange(char kind, const std::string &value, const std::string &code)
{
    std::string line(1, kind);
    return line.append(value).append(" ").append(code);
}

// One value change, on a line of its own.
std::string ChangeLine(const SVariable &variable, const std::optional<std::string> &value)
{
    switch (variable.kind) {
    case EKind::Bits: {
        const std::string letters = value ? Letters(*value) : "z";
        return variable.width == 1 ? letters + variable.code : LongChange('b', letters, variable.code);
    }
    case EKind::Integer:
        return LongChange('b', value ? VcdBits(static_cast<unsigned long long>(std::stoll(*value)), 64) : "z",
                          variable.code);
    case EKind::Real: return LongChange('r', value.value_or("nan"), variable.code);
    default: return LongChange('s', VcdEscapedText(value.value_or("")), variable.code);
    }
}

std::string Reference(const STrace &trace)
{
    std::string name = trace.name.empty() ? "stimulus" : trace.name;
    std::ranges::replace_if(
        name, [](char c) { return c <= ' '; }, '_');
    return name;
}

}  // namespace

namespace {

// The elements of a bus of bits are in its vector; any other bus is shown with them.
std::span<const STrace> DumpedTraces(const SWaveform &waveform)
{
    const std::span<const STrace> traces = waveform.traces;
    const bool isVector = traces.size() > 1 && AllValues(traces.front(), IsBits);
    return isVector ? traces.first(1) : traces;
}

}  // namespace

void WriteVcd(std::ostream &out, const SWaveform &waveform)
{
    const std::span<const STrace> traces = DumpedTraces(waveform);
    const SVcdTimeScale scale = VcdTimeScale(waveform.resolution);
    std::vector<SVariable> variables;
    out << "$version tesk $end\n$timescale " << scale.text << " $end\n$scope module tesk $end\n";
    for (const STrace &trace : traces) {
        variables.push_back(Describe(trace, variables.size()));
        const SVariable &variable = variables.back();
        out << "$var " << TypeName(variable.kind) << ' ' << variable.width << ' ' << variable.code << ' '
            << Reference(trace);
        if (variable.kind == EKind::Bits && variable.width > 1)
            out << " [" << variable.width - 1 << ":0]";
        out << " $end\n";
    }
    out << "$upscope $end\n$enddefinitions $end\n#0\n$dumpvars\n";
    for (const SVariable &variable : variables)
        out << ChangeLine(variable, std::nullopt) << '\n';
    out << "$end\n";

    std::multimap<long long, std::string> lines;  // by time; lines of one time stay in the order of the traces
    for (std::size_t i = 0; i < variables.size(); ++i) {
        for (const SChange &change : traces[i].changes)
            lines.emplace(change.ticks, ChangeLine(variables[i], change.value));
    }
    long long stamped = 0;
    const auto stamp = [&](long long ticks) {
        if (stamped != ticks)
            out << VcdTimeStamp(ticks, scale) << '\n';
        stamped = ticks;
    };
    for (const auto &[ticks, line] : lines) {
        stamp(ticks);
        out << line << '\n';
    }
    stamp(waveform.end);
}
