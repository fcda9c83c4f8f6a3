// The format VCD.
#include "tools/writers.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <span>
#include <string_view>

#include "settings/timeunits.h"
#include "tools/timetext.h"

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
    // Codes are the printable characters from '!' on, as digits of the index.
    std::string code;
    do {
        code += static_cast<char>('!' + index % 94);
        index /= 94;
    } while (index != 0);
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

std::string BitText(long long number)
{
    std::string bits;
    for (int i = 63; i >= 0; --i)
        bits += ((static_cast<unsigned long long>(number) >> i) & 1) != 0 ? '1' : '0';
    return bits;
}

// Blanks and what a line cannot hold are escaped, as viewers read strings.
std::string EscapedText(const std::string &text)
{
    static constexpr char Hex[] = "0123456789abcdef";
    std::string escaped;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte > ' ' && byte < 0x7F && c != '\\')
            escaped += c;
        else
            escaped += std::string("\\x") + Hex[byte >> 4] + Hex[byte & 15];
    }
    return escaped;
}

std::string Letters(const std::string &value)
{
    std::string letters;
    for (const char c : value)
        letters += FourState(c);
    return letters;
}

// One value change, on a line of its own.
std::string ChangeLine(const SVariable &variable, const std::optional<std::string> &value)
{
    switch (variable.kind) {
    case EKind::Bits: {
        const std::string letters = value ? Letters(*value) : "z";
        return (variable.width == 1 ? letters : "b" + letters + " ") + variable.code;
    }
    case EKind::Integer: return "b" + (value ? BitText(std::stoll(*value)) : "z") + " " + variable.code;
    case EKind::Real: return "r" + value.value_or("nan") + " " + variable.code;
    default: return "s" + EscapedText(value.value_or("")) + " " + variable.code;
    }
}

// A time scale is 1, 10 or 100 of a unit up to seconds; what the resolution has beyond that multiplies the times.
struct STimeScale {
    std::string text;
    long long factor;
};

STimeScale TimeScale(long long resolution)
{
    const int unit = CoarsestWholeUnit(resolution);
    long long factor = resolution / static_cast<long long>(UnitLength(unit));
    int scale = 1;
    while (scale < 100 && factor % 10 == 0) {
        scale *= 10;
        factor /= 10;
    }
    const char *name = unit == 5 ? "s" : tesk::UnitNameFromID(static_cast<unsigned>(unit));
    return {std::to_string(scale) + name, factor};
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
    const STimeScale scale = TimeScale(waveform.resolution);
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
            out << '#'
                << static_cast<long long>(static_cast<unsigned long long>(ticks) *
                                          static_cast<unsigned long long>(scale.factor))
                << '\n';
        stamped = ticks;
    };
    for (const auto &[ticks, line] : lines) {
        stamp(ticks);
        out << line << '\n';
    }
    stamp(waveform.end);
}
