// Value change dumps out of other waveform files.
#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <functional>
#include <queue>

#include "tools/signalwalk.h"
#include "tools/vcdname.h"
#include "tools/vcdtext.h"
#include "tools/waveoutput.h"

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

struct SDumpVariable {
    SVcdName name;
    SScalarForm form;
    KTypeInfo type;
    std::string code;
    CSignalWalk walk;
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
std::string Declaration(const SDumpVariable &variable)
{
    const std::string name = variable.code + ' ' + variable.name.variable;
    const std::size_t width = variable.walk.GetValues().size();
    switch (variable.form.kind) {
    case EDumpKind::Integer: return "integer " + std::to_string(variable.form.integerBits) + ' ' + name;
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

std::string BitText(const SDumpVariable &variable)
{
    std::string text;
    for (const auto &value : variable.walk.GetValues())
        text += value && *value < variable.form.letters.size() ? variable.form.letters[*value] : 'x';
    return text;
}

// The value of a variable now, on a line of its own.
std::string ChangeLine(const SDumpVariable &variable)
{
    const std::uint64_t value = variable.walk.GetValues().front().value_or(0);
    switch (variable.form.kind) {
    case EDumpKind::Integer: return 'b' + VcdBits(value, variable.form.integerBits) + ' ' + variable.code;
    case EDumpKind::Real: return 'r' + RealText(value) + ' ' + variable.code;
    case EDumpKind::Text:
        return 's' + VcdEscapedText(Literal(variable.type, static_cast<unsigned>(value))) + ' ' + variable.code;
    default: break;
    }
    const bool isVector = !variable.type.IsScalar();
    return (isVector ? 'b' + BitText(variable) + ' ' : BitText(variable)) + variable.code;
}

void AddVariable(std::vector<SDumpVariable> &variables, IWaveFile &file, const SFileSignal &signal,
                 const SScalarForm &form)
{
    variables.push_back(
        {SplitVcdName(signal.path), form, signal.type, VcdCode(variables.size()), CSignalWalk(file, signal)});
}

// Scalars and vectors of bits are variables; of any other array each element is one.
std::vector<SDumpVariable> MakeVariables(IWaveFile &file)
{
    std::vector<SDumpVariable> variables;
    for (const SFileSignal &signal : file.GetSignals()) {
        const KTypeInfo *element = signal.type.GetArrayElementKTypeInfo();
        const SScalarForm form = FormOf(element != nullptr ? *element : signal.type);
        if (element == nullptr || form.kind == EDumpKind::Bits) {
            AddVariable(variables, file, signal, form);
            continue;
        }
        int left = 0;
        int right = 0;
        int direction = 0;
        signal.type.GetArrayDimensionRanges(0, left, right, direction);
        for (long long i = 0; i < signal.elementCount; ++i) {
            const std::string index = std::to_string(direction == 0 ? left + i : left - i);
            AddVariable(variables, file, {signal.path + '(' + index + ')', *element, signal.firstElement + i, 1}, form);
        }
    }
    return variables;
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

void WriteDeclarations(std::ostream &out, const std::vector<SDumpVariable> &variables, const SVcdTimeScale &scale)
{
    out << "$version tesk $end\n$timescale " << scale.text << " $end\n";
    std::vector<std::string> scopes;
    for (const SDumpVariable &variable : variables) {
        WriteScopes(out, scopes, variable.name.scopes);
        scopes = variable.name.scopes;
        out << "$var " << Declaration(variable) << " $end\n";
    }
    WriteScopes(out, scopes, {});
    out << "$enddefinitions $end\n";
}

}  // namespace

void WriteWaveDump(std::ostream &out, IWaveFile &file)
{
    const SVcdTimeScale scale = VcdTimeScale(file.GetResolution());
    std::vector<SDumpVariable> variables = MakeVariables(file);
    WriteDeclarations(out, variables, scale);

    using CNextChange = std::pair<long long, std::size_t>;  // time and variable
    std::priority_queue<CNextChange, std::vector<CNextChange>, std::greater<>> next;
    const auto fetch = [&](std::size_t index) {
        if (variables[index].walk.Next())
            next.emplace(variables[index].walk.GetTime(), index);
    };
    for (std::size_t i = 0; i < variables.size(); ++i)
        fetch(i);
    long long stamped = 0;
    out << VcdTimeStamp(0, scale) << '\n';
    while (!next.empty()) {
        const auto [time, index] = next.top();
        next.pop();
        if (time != stamped)
            out << VcdTimeStamp(time, scale) << '\n';
        stamped = time;
        out << ChangeLine(variables[index]) << '\n';
        fetch(index);
    }
    if (file.GetEndTime() > stamped)
        out << VcdTimeStamp(file.GetEndTime(), scale) << '\n';
}
