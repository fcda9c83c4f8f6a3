// The format VCD.
#include "tools/writers/writers.h"

#include <optional>
#include <string>
#include <vector>

#include "tools/files/vcdname.h"
#include "tools/files/vcdtext.h"
#include "tools/writers/dumpedtrace.h"
#include "tools/writers/valuetext.h"

namespace {

using tesk::EValueKind;
using tesk::SDumpedTrace;
using tesk::SValueKind;

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
std::string ChangeLine(const SValueKind &form, const std::string &code, const std::optional<std::string> &value)
{
    switch (form.kind) {
    case EValueKind::Bits: {
        const std::string letters = value ? Letters(*value) : "z";
        return form.width == 1 ? letters + code : LongChange('b', letters, code);
    }
    case EValueKind::Integer:
        return LongChange(
            'b',
            value ? VcdBits(static_cast<unsigned long long>(std::stoll(*value)), static_cast<int>(form.width)) : "z",
            code);
    case EValueKind::Real: return LongChange('r', value.value_or("nan"), code);
    default: return LongChange('s', VcdEscapedText(value.value_or("")), code);
    }
}

void WriteDeclarations(std::ostream &out, const std::vector<SDumpedTrace> &traces)
{
    std::vector<std::string> scopes;
    for (std::size_t i = 0; i < traces.size(); ++i) {
        const auto &[trace, form, name, range] = traces[i];
        WriteVcdScopes(out, scopes, name.scopes);
        scopes = name.scopes;
        out << "$var " << TypeName(form.kind) << ' ' << form.width << ' ' << VcdCode(i) << ' ' << name.variable
            << (range.empty() ? "" : " ") << range << " $end\n";
    }
    WriteVcdScopes(out, scopes, {});
    out << "$enddefinitions $end\n#0\n$dumpvars\n";
    for (std::size_t i = 0; i < traces.size(); ++i)
        out << ChangeLine(traces[i].form, VcdCode(i), std::nullopt) << '\n';
    out << "$end\n";
}

}  // namespace

void WriteVcd(std::ostream &out, const SWaveform &waveform)
{
    const std::vector<SDumpedTrace> traces = tesk::DumpedTraces(waveform);
    const SVcdTimeScale scale = VcdTimeScale(waveform.resolution);
    out << "$version tesk $end\n$timescale " << scale.text << " $end\n";
    WriteDeclarations(out, traces);
    long long stamped = 0;
    const auto stamp = [&](long long ticks) {
        if (stamped != ticks)
            out << VcdTimeStamp(ticks, scale) << '\n';
        stamped = ticks;
    };
    for (const auto &[trace, index] : tesk::ChangesByTime(traces)) {
        const SChange &change = traces[trace].trace->changes[index];
        stamp(change.ticks);
        out << ChangeLine(traces[trace].form, VcdCode(trace), change.value) << '\n';
    }
    stamp(waveform.end);
}
