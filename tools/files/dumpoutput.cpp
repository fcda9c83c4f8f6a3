// Value change dumps out of other waveform files.
#include <array>
#include <charconv>
#include <string>
#include <vector>

#include "tools/files/dumpvariables.h"
#include "tools/files/vcdtext.h"
#include "tools/files/waveoutput.h"
#include "tools/progress.h"
#include "waveform/files/filewalk.h"

using tesk::CFileWalk;
using tesk::IWaveformFile;

namespace {

// What stands behind "$var".
std::string Declaration(const SDumpVariable &variable, const SDumpEvents &events)
{
    const std::string name = VcdCode(variable.events) + ' ' + variable.name.variable;
    switch (events.form.kind) {
    case EDumpKind::Integer: return "integer " + std::to_string(events.form.integerBits) + ' ' + name;
    case EDumpKind::Real: return "real 64 " + name;
    case EDumpKind::Text: return "string 1 " + name;
    default: break;
    }
    const std::string range = variable.Range();
    return "wire " + std::to_string(events.Width()) + ' ' + name + (range.empty() ? "" : " " + range);
}

std::string RealText(double value)
{
    std::array<char, 40> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return {text.data(), end};
}

// The value now, in front of the identifier code.
std::string ValueText(const SDumpEvents &events, const CDumpValues &values)
{
    switch (events.form.kind) {
    case EDumpKind::Integer: return 'b' + events.IntegerBits(values) + ' ';
    case EDumpKind::Real: return 'r' + RealText(events.Real(values)) + ' ';
    case EDumpKind::Text: return 's' + VcdEscapedText(events.Text(values)) + ' ';
    default: break;
    }
    return events.signal.type.IsScalar() ? events.Bits(values) : 'b' + events.Bits(values) + ' ';
}

void WriteDeclarations(std::ostream &out, const CDump &dump, const SVcdTimeScale &scale)
{
    out << "$version tesk $end\n$timescale " << scale.text << " $end\n";
    std::vector<std::string> scopes;
    for (const SDumpVariable &variable : dump.variables) {
        WriteVcdScopes(out, scopes, variable.name.scopes);
        scopes = variable.name.scopes;
        out << "$var " << Declaration(variable, dump.events[variable.events]) << " $end\n";
    }
    WriteVcdScopes(out, scopes, {});
    out << "$enddefinitions $end\n";
}

}  // namespace

void WriteWaveDump(std::ostream &out, IWaveformFile &file)
{
    const SVcdTimeScale scale = VcdTimeScale(file.GetResolution());
    const CDump dump(file);
    WriteDeclarations(out, dump, scale);

    CFileWalk walk(file, dump.Signals());
    long long stamped = 0;
    out << VcdTimeStamp(0, scale) << '\n';
    tesk::CProgressLine progress("Writing");
    while (walk.Next()) {
        progress.Show(walk.GetTime(), file.GetEndTime());
        if (walk.GetTime() != stamped)
            out << VcdTimeStamp(walk.GetTime(), scale) << '\n';
        stamped = walk.GetTime();
        out << ValueText(dump.events[walk.GetSignal()], walk.GetValues()) << VcdCode(walk.GetSignal()) << '\n';
    }
    if (file.GetEndTime() > stamped)
        out << VcdTimeStamp(file.GetEndTime(), scale) << '\n';
}
