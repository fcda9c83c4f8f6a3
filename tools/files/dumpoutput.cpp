// Value change dumps out of other waveform files.
#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "tools/files/vcdname.h"
#include "tools/files/vcdtext.h"
#include "tools/files/waveoutput.h"
#include "waveform/files/filewalk.h"

using tesk::CFileWalk;
using tesk::IWaveformFile;
using tesk::SFileSignal;

namespace {

using Kestrin::KTypeInfo;

constexpr int EnumerationKind = 1;
constexpr int RealKind = 3;
constexpr int PhysicalKind = 6;

enum class EDumpKind { Bits, Integer, Real, Text };

// How the scalars of a type are written.
struct SScalarForm {
    EDumpKind kind = EDumpKind::Text;
    int integerBits = 32;
    std::string letters;  // of bits, by position
};

using CValues = std::vector<std::optional<std::uint64_t>>;  // raw, of each element

struct SDumpVariable {
    SVcdName name;
    KTypeInfo type;
    std::size_t events;  // which ones it shows
};

struct SDumpEvents {
    SScalarForm form;
    std::string code;
    SFileSignal signal;  // the first of those that have them
};

std::string Literal(const KTypeInfo &type, unsigned position)
{
    const std::array<unsigned char, 2> bytes = {static_cast<unsigned char>(position & 0xFF),
                                                static_cast<unsigned char>(position >> 8)};
    return type.GetValueString_OldFormat(bytes.data(), 0, 0, 0, false);
}

// The letter that a dump has for a literal of one character; 0 if it has none. Beside the four states these are the ones
// that simulators write for std_logic, in lower case, since GTKWave's converter passes over single capital ones.
char DumpLetter(const std::string &literal)
{
    constexpr std::string_view Literals = "01XxZzUWLH-";
    constexpr std::string_view Letters = "01xxzzuwlh-";
    const std::size_t index = literal.size() == 1 ? Literals.find(literal[0]) : Literals.npos;
    return index != Literals.npos ? Letters[index] : '\0';
}

// The letters of all literals; empty if one of them has none.
std::string LettersOf(const KTypeInfo &type)
{
    std::string letters;
    for (unsigned position = 0; position < 256; ++position) {
        const std::string literal = Literal(type, position);
        if (literal.empty())
            break;
        const char letter = DumpLetter(literal);
        if (letter == '\0')
            return {};
        letters += letter;
    }
    return letters;
}

SScalarForm FormOf(const KTypeInfo &type)
{
    switch (type.GetKind()) {
    case EnumerationKind: {
        const std::string letters = LettersOf(type);
        return {letters.empty() ? EDumpKind::Text : EDumpKind::Bits, 0, letters};
    }
    case RealKind: return {EDumpKind::Real, 0, {}};
    case PhysicalKind: return {EDumpKind::Integer, 64, {}};
    default: return {EDumpKind::Integer, 32, {}};
    }
}

// What stands behind "$var".
std::string Declaration(const SDumpVariable &variable, const SDumpEvents &events)
{
    const std::string name = events.code + ' ' + variable.name.variable;
    const long long width = events.signal.elementCount;
    switch (events.form.kind) {
    case EDumpKind::Integer: return "integer " + std::to_string(events.form.integerBits) + ' ' + name;
    case EDumpKind::Real: return "real 64 " + name;
    case EDumpKind::Text: return "string 1 " + name;
    default: break;
    }
    int left = 0;
    int right = 0;
    int direction = 0;
    const bool hasRange = variable.type.GetArrayDimensionRanges(0, left, right, direction);
    return "wire " + std::to_string(width) + ' ' + name +
           (hasRange ? " [" + std::to_string(left) + ':' + std::to_string(right) + ']' : "");
}

std::string RealText(std::uint64_t value)
{
    std::array<char, 40> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), std::bit_cast<double>(value)).ptr;
    return {text.data(), end};
}

std::string BitText(const SDumpEvents &events, const CValues &values)
{
    std::string text;
    for (const auto &value : values)
        text += value && *value < events.form.letters.size() ? events.form.letters[*value] : 'x';
    return text;
}

// The value now, on a line of its own.
std::string ChangeLine(const SDumpEvents &events, const CValues &values)
{
    const std::uint64_t value = values.front().value_or(0);
    switch (events.form.kind) {
    case EDumpKind::Integer: return 'b' + VcdBits(value, events.form.integerBits) + ' ' + events.code;
    case EDumpKind::Real: return 'r' + RealText(value) + ' ' + events.code;
    case EDumpKind::Text:
        return 's' + VcdEscapedText(Literal(events.signal.type, static_cast<unsigned>(value))) + ' ' + events.code;
    default: break;
    }
    const bool isVector = !events.signal.type.IsScalar();
    return (isVector ? 'b' + BitText(events, values) + ' ' : BitText(events, values)) + events.code;
}

// The variables, and what they show: those that share their events share an identifier code too.
class CDump {
public:
    explicit CDump(IWaveformFile &file);

    std::vector<SDumpVariable> variables;
    std::vector<SDumpEvents> events;

private:
    void Add(IWaveformFile &file, const SFileSignal &signal, const SScalarForm &form);

    // By the type of the scalars, as a vector or not, and the events of all elements.
    std::map<std::tuple<std::string, bool, std::vector<long long>>, std::size_t> m_known;
};

void CDump::Add(IWaveformFile &file, const SFileSignal &signal, const SScalarForm &form)
{
    const bool isScalar = signal.type.IsScalar();
    const char *scalar = isScalar ? signal.type.GetTypeInfoString() : signal.type.GetArrayElementTypeInfo();
    const auto [known, isNew] = m_known.try_emplace({scalar, isScalar, IdentifyEvents(file, signal)}, events.size());
    if (isNew)
        events.push_back({form, VcdCode(events.size()), signal});
    variables.push_back({SplitVcdName(signal.path), signal.type, known->second});
}

// Scalars and vectors of bits are variables; of any other array each element is one.
CDump::CDump(IWaveformFile &file)
{
    for (const SFileSignal &signal : file.GetSignals()) {
        const KTypeInfo *element = signal.type.GetArrayElementKTypeInfo();
        const SScalarForm form = FormOf(element != nullptr ? *element : signal.type);
        if (element == nullptr || form.kind == EDumpKind::Bits) {
            Add(file, signal, form);
            continue;
        }
        int left = 0;
        int right = 0;
        int direction = 0;
        signal.type.GetArrayDimensionRanges(0, left, right, direction);
        for (long long i = 0; i < signal.elementCount; ++i) {
            const std::string index = std::to_string(direction == 0 ? left + i : left - i);
            Add(file, {signal.path + '(' + index + ')', *element, signal.firstElement + i, 1}, form);
        }
    }
}

// Closes and opens scopes on the way from one variable to the next.
void WriteScopes(std::ostream &out, const std::vector<std::string> &from, const std::vector<std::string> &to)
{
    const auto [kept, next] = std::ranges::mismatch(from, to);
    for (auto scope = kept; scope != from.end(); ++scope)
        out << "$upscope $end\n";
    for (auto scope = next; scope != to.end(); ++scope)
        out << "$scope module " << *scope << " $end\n";
}

void WriteDeclarations(std::ostream &out, const CDump &dump, const SVcdTimeScale &scale)
{
    out << "$version tesk $end\n$timescale " << scale.text << " $end\n";
    std::vector<std::string> scopes;
    for (const SDumpVariable &variable : dump.variables) {
        WriteScopes(out, scopes, variable.name.scopes);
        scopes = variable.name.scopes;
        out << "$var " << Declaration(variable, dump.events[variable.events]) << " $end\n";
    }
    WriteScopes(out, scopes, {});
    out << "$enddefinitions $end\n";
}

}  // namespace

void WriteWaveDump(std::ostream &out, IWaveformFile &file)
{
    const SVcdTimeScale scale = VcdTimeScale(file.GetResolution());
    CDump dump(file);
    WriteDeclarations(out, dump, scale);

    std::vector<SFileSignal> signals;
    for (const SDumpEvents &events : dump.events)
        signals.push_back(events.signal);
    CFileWalk walk(file, signals);
    long long stamped = 0;
    out << VcdTimeStamp(0, scale) << '\n';
    while (walk.Next()) {
        if (walk.GetTime() != stamped)
            out << VcdTimeStamp(walk.GetTime(), scale) << '\n';
        stamped = walk.GetTime();
        out << ChangeLine(dump.events[walk.GetSignal()], walk.GetValues()) << '\n';
    }
    if (file.GetEndTime() > stamped)
        out << VcdTimeStamp(file.GetEndTime(), scale) << '\n';
}
