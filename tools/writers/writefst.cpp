// The format FST.
#include "tools/writers/writers.h"

#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/fstwriter/fstwriter.h"
#include "tools/files/fstoutline.h"
#include "tools/files/vcdtext.h"
#include "tools/writers/dumpedtrace.h"

namespace {

using NTARN::CFstWriter;
using NTARN::EFstDirection;
using NTARN::EFstVariable;
using tesk::EValueKind;
using tesk::SDumpedTrace;
using tesk::SValueKind;

EFstVariable VariableOf(EValueKind kind)
{
    switch (kind) {
    case EValueKind::Bits: return EFstVariable::Wire;
    case EValueKind::Integer: return EFstVariable::Integer;
    case EValueKind::Real: return EFstVariable::Real;
    default: return EFstVariable::Text;
    }
}

char FstLetter(char c)
{
    constexpr std::string_view From = "01XxZzUWLH-uwlh";
    constexpr std::string_view To = "01xxzzuwlh-uwlh";
    const std::size_t index = From.find(c);
    return index != From.npos ? To[index] : 'x';
}

// As many letters as the variable has bits: a short value is filled on the left, behind a leading 1 with 0.
std::string FstLetters(const std::optional<std::string> &value, std::size_t width)
{
    std::string letters;
    for (const char c : value && !value->empty() ? *value : "z")
        letters += FstLetter(c);
    if (letters.size() < width)
        letters.insert(0, width - letters.size(), letters.front() == '1' ? '0' : letters.front());
    return letters.substr(letters.size() - width);
}

double RealOf(const std::optional<std::string> &value)
{
    double real = std::numeric_limits<double>::quiet_NaN();
    if (value)
        std::from_chars(value->data(), value->data() + value->size(), real);
    return real;
}

void WriteChange(CFstWriter &writer, std::uint32_t handle, const SValueKind &form,
                 const std::optional<std::string> &value)
{
    switch (form.kind) {
    case EValueKind::Bits: return writer.Change(handle, FstLetters(value, form.width));
    case EValueKind::Integer:
        return writer.Change(
            handle, value ? VcdBits(static_cast<unsigned long long>(std::stoll(*value)), static_cast<int>(form.width))
                          : std::string(form.width, 'z'));
    case EValueKind::Real: return writer.Change(handle, RealOf(value));
    default: return writer.ChangeText(handle, value.value_or(""));
    }
}

std::vector<std::uint32_t> Declare(CFstWriter &writer, const std::vector<SDumpedTrace> &traces)
{
    std::vector<std::uint32_t> handles;
    tesk::CFstScopes scopes(writer);
    for (const SDumpedTrace &dumped : traces) {
        scopes.GoTo(dumped.name.scopes);
        const std::string name = dumped.name.variable + (dumped.range.empty() ? "" : " " + dumped.range);
        handles.push_back(writer.AddVariable(VariableOf(dumped.form.kind), EFstDirection::None, name,
                                             static_cast<std::uint32_t>(dumped.form.width)));
    }
    scopes.GoTo({});
    return handles;
}

}  // namespace

void WriteFstWaveform(std::ostream &out, const SWaveform &waveform)
{
    const tesk::SFstTimeScale scale(waveform.resolution);
    const std::vector<SDumpedTrace> traces = tesk::DumpedTraces(waveform);
    std::ostringstream file;  // is written back and forth, which a pipe cannot be
    CFstWriter writer(file, scale.exponent);
    const std::vector<std::uint32_t> handles = Declare(writer, traces);
    for (std::size_t i = 0; i < traces.size(); ++i)
        WriteChange(writer, handles[i], traces[i].form, std::nullopt);
    writer.SetTime(0);
    for (const auto &[trace, index] : tesk::ChangesByTime(traces)) {
        const SChange &change = traces[trace].trace->changes[index];
        writer.SetTime(scale.Time(change.ticks));
        WriteChange(writer, handles[trace], traces[trace].form, change.value);
    }
    tesk::FinishFst(writer, scale.Time(waveform.end));
    out << file.str();
}
