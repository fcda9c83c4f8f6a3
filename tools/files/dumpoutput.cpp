// Value change dumps out of other waveform files.
#include <array>
#include <charconv>
#include <cstddef>
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
void AppendValue(std::string &text, const SDumpEvents &events, const CFileWalk &walk)
{
    switch (events.form.kind) {
    case EDumpKind::Integer: text.append("b").append(events.IntegerBits(walk.GetValues())).append(" "); return;
    case EDumpKind::Real: text.append("r").append(RealText(events.Real(walk.GetValues()))).append(" "); return;
    case EDumpKind::Text: text.append("s").append(VcdEscapedText(events.Text(walk.GetValues()))).append(" "); return;
    default: break;
    }
    if (!events.isScalar)
        text += 'b';
    events.AppendBits(walk.GetPositions(), text);
    if (!events.isScalar)
        text += ' ';
}

// Behind each value, the identifier code and the end of the line.
std::vector<std::string> LineEnds(std::size_t count)
{
    std::vector<std::string> ends;
    for (std::size_t i = 0; i < count; ++i)
        ends.push_back(VcdCode(i) + '\n');
    return ends;
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

    constexpr std::size_t Batch = 1 << 16;  // bytes written at once
    CFileWalk walk(file, dump.Signals());
    const std::vector<std::string> lineEnds = LineEnds(dump.events.size());
    const long long end = file.EstimateEndTime();
    long long stamped = 0;
    std::string text = VcdTimeStamp(0, scale) + '\n';
    tesk::CProgressLine progress("Writing");
    while (walk.Next()) {
        progress.Show(walk.GetTime(), end);
        if (walk.GetTime() != stamped)
            text.append(VcdTimeStamp(walk.GetTime(), scale)).append("\n");
        stamped = walk.GetTime();
        AppendValue(text, dump.events[walk.GetSignal()], walk);
        text += lineEnds[walk.GetSignal()];
        if (text.size() < Batch)
            continue;
        out << text;
        text.clear();
    }
    out << text;
    if (file.GetEndTime() > stamped)
        out << VcdTimeStamp(file.GetEndTime(), scale) << '\n';
}
