// The format VCD.
#include "tools/writers/writers.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/kestrin.h"
#include "tools/files/vcdname.h"
#include "tools/files/vcdtext.h"
#include "tools/writers/valuekind.h"
#include "tools/writers/valuetext.h"

namespace {

using tesk::EValueKind;

struct SVariable {
    EValueKind kind;
    std::size_t width;
    std::string code;
};

SVariable Describe(const STrace &trace, std::size_t index)
{
    const tesk::SValueKind values = tesk::KindOfValues(trace);
    return {values.kind, values.width, VcdCode(index)};
}

const char *TypeName(EValueKind kind)
{
    switch (kind) {
    case EValueKind::Bits: return "wire";
    case EValueKind::Integer: return "integer";
    case EValueKind::Real: return "real";
    default: return "string";
    }
}

std::string Letters(const std::string &value)
{
    std::string letters;
    for (const char c : value) {
        const char letter = tesk::FourStateLetter(c);
        letters += letter != 0 ? letter : 'x';
    }
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
    case EValueKind::Bits: {
        const std::string letters = value ? Letters(*value) : "z";
        return variable.width == 1 ? letters + variable.code : LongChange('b', letters, variable.code);
    }
    case EValueKind::Integer:
        return LongChange(
            'b',
            value ? VcdBits(static_cast<unsigned long long>(std::stoll(*value)), static_cast<int>(variable.width))
                  : "z",
            variable.code);
    case EValueKind::Real: return LongChange('r', value.value_or("nan"), variable.code);
    default: return LongChange('s', VcdEscapedText(value.value_or("")), variable.code);
    }
}

// The name in a dump. A signal without scopes stands in one called tesk.
SVcdName Reference(const STrace &trace)
{
    SVcdName name = SplitVcdName(trace.NameInFile());
    if (name.scopes.empty())
        name.scopes.push_back("tesk");
    return name;
}

// The bounds behind the name of a vector, those of its type where it is known.
std::string VectorRange(const STrace &trace, const SVariable &variable)
{
    const Kestrin::KTypeInfo type(trace.type.c_str());
    int left = 0;
    int right = 0;
    int direction = 0;
    if (variable.kind == EValueKind::Bits && type.GetArrayDimensionRanges(0, left, right, direction))
        return " [" + std::to_string(left) + ':' + std::to_string(right) + ']';
    return variable.kind == EValueKind::Bits && variable.width > 1 ? " [" + std::to_string(variable.width - 1) + ":0]"
                                                                   : "";
}

// The elements of a bus of bits are in its vector; any other bus is shown with them.
std::vector<const STrace *> DumpedTraces(const SWaveform &waveform)
{
    std::vector<const STrace *> dumped;
    bool isInVector = false;
    for (const STrace &trace : waveform.traces) {
        if (!trace.IsElement())
            isInVector = tesk::IsBitVectorType(trace.type);
        if (!trace.IsElement() || !isInVector)
            dumped.push_back(&trace);
    }
    return dumped;
}

}  // namespace

void WriteVcd(std::ostream &out, const SWaveform &waveform)
{
    const std::vector<const STrace *> traces = DumpedTraces(waveform);
    const SVcdTimeScale scale = VcdTimeScale(waveform.resolution);
    std::vector<SVariable> variables;
    out << "$version tesk $end\n$timescale " << scale.text << " $end\n";
    std::vector<std::string> scopes;
    for (const STrace *trace : traces) {
        const SVcdName name = Reference(*trace);
        WriteVcdScopes(out, scopes, name.scopes);
        scopes = name.scopes;
        variables.push_back(Describe(*trace, variables.size()));
        const SVariable &variable = variables.back();
        out << "$var " << TypeName(variable.kind) << ' ' << variable.width << ' ' << variable.code << ' '
            << name.variable;
        out << VectorRange(*trace, variable);
        out << " $end\n";
    }
    WriteVcdScopes(out, scopes, {});
    out << "$enddefinitions $end\n#0\n$dumpvars\n";
    for (const SVariable &variable : variables)
        out << ChangeLine(variable, std::nullopt) << '\n';
    out << "$end\n";

    std::multimap<long long, std::string> lines;  // by time; lines of one time stay in the order of the traces
    for (std::size_t i = 0; i < variables.size(); ++i) {
        for (const SChange &change : traces[i]->changes)
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
