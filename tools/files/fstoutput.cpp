// FST files out of other waveform files.
#include <cstdint>
#include <string>
#include <vector>

#include "platform/fstwriter/fstwriter.h"
#include "tools/files/dumpvariables.h"
#include "tools/files/fstoutline.h"
#include "tools/files/waveoutput.h"
#include "tools/progress.h"
#include "waveform/files/filewalk.h"

using NTARN::CFstWriter;
using NTARN::EFstDirection;
using NTARN::EFstVariable;

namespace {

EFstVariable VariableKind(EDumpKind kind)
{
    switch (kind) {
    case EDumpKind::Integer: return EFstVariable::Integer;
    case EDumpKind::Real: return EFstVariable::Real;
    case EDumpKind::Text: return EFstVariable::Text;
    default: return EFstVariable::Wire;
    }
}

EFstDirection DirectionOf(tesk::ESignalDirection direction)
{
    switch (direction) {
    case tesk::ESignalDirection::In: return EFstDirection::In;
    case tesk::ESignalDirection::Out: return EFstDirection::Out;
    case tesk::ESignalDirection::InOut: return EFstDirection::InOut;
    default: return EFstDirection::None;
    }
}

std::uint32_t WidthOf(const SDumpEvents &events)
{
    const bool isInteger = events.form.kind == EDumpKind::Integer;
    return static_cast<std::uint32_t>(isInteger ? events.form.integerBits : events.Width());
}

// Variables that show the same events are names of one.
class CFstOutput {
public:
    CFstOutput(std::ostream &out, const CDump &dump, int exponent)
        : m_dump(dump), m_writer(out, exponent), m_scopes(m_writer), m_handles(dump.events.size(), CFstWriter::None)
    {}

    void Declare()
    {
        for (const SDumpVariable &variable : m_dump.variables) {
            m_scopes.GoTo(variable.name.scopes);
            Declare(variable);
        }
        m_scopes.GoTo({});
    }

    void SetTime(std::uint64_t time) { m_writer.SetTime(time); }

    void Change(const tesk::CFileWalk &walk)
    {
        const SDumpEvents &events = m_dump.events[walk.GetSignal()];
        const std::uint32_t handle = m_handles[walk.GetSignal()];
        switch (events.form.kind) {
        case EDumpKind::Integer: return m_writer.Change(handle, events.IntegerBits(walk.GetValues()));
        case EDumpKind::Real: return m_writer.Change(handle, events.Real(walk.GetValues()));
        case EDumpKind::Text: return m_writer.ChangeText(handle, events.Text(walk.GetValues()));
        default: break;
        }
        m_bits.clear();
        events.AppendBits(walk.GetPositions(), m_bits);
        m_writer.Change(handle, m_bits);
    }

    void Finish(std::uint64_t end) { tesk::FinishFst(m_writer, end); }

private:
    void Declare(const SDumpVariable &variable)
    {
        const SDumpEvents &events = m_dump.events[variable.events];
        const EFstVariable kind = VariableKind(events.form.kind);
        const std::string range = events.form.kind == EDumpKind::Bits ? variable.Range() : "";
        const std::string name = variable.name.variable + (range.empty() ? "" : " " + range);
        std::uint32_t &handle = m_handles[variable.events];
        if (handle == CFstWriter::None)
            handle = m_writer.AddVariable(kind, DirectionOf(variable.direction), name, WidthOf(events));
        else
            m_writer.AddAlias(kind, DirectionOf(variable.direction), name, handle);
    }

    const CDump &m_dump;
    CFstWriter m_writer;
    tesk::CFstScopes m_scopes;
    std::vector<std::uint32_t> m_handles;  // of the events
    std::string m_bits;                    // of the value written last
};

}  // namespace

void WriteFst(std::ostream &out, tesk::IWaveformFile &file)
{
    const tesk::SFstTimeScale scale(file.GetResolution());
    const CDump dump(file);
    CFstOutput output(out, dump, scale.exponent);
    output.Declare();
    output.SetTime(0);
    tesk::CFileWalk walk(file, dump.Signals());
    tesk::CProgressLine progress("Writing");
    const long long end = file.EstimateEndTime();
    while (walk.Next()) {
        progress.Show(walk.GetTime(), end);
        output.SetTime(scale.Time(walk.GetTime()));
        output.Change(walk);
    }
    output.Finish(scale.Time(file.GetEndTime()));
}
