#include "tools/files/dumpvariables.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <string_view>

#include "base/bytes.h"
#include "tools/files/vcdtext.h"
#include "waveform/files/signalwalk.h"

using tesk::IWaveformFile;
using tesk::SFileSignal;

namespace {

using Kestrin::KTypeInfo;

using Kestrin::ETypeKind;

std::string Literal(const KTypeInfo &type, unsigned position)
{
    std::array<unsigned char, 2> bytes;
    tesk::StoreLittleEndian(position, bytes.data(), bytes.size());
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

// The letters of all literals. @return whether each of them has one
bool FindLetters(const KTypeInfo &type, std::array<char, 256> &letters)
{
    letters.fill('x');
    for (unsigned position = 0; position < letters.size(); ++position) {
        const std::string literal = Literal(type, position);
        if (literal.empty())
            return position > 0;
        letters[position] = DumpLetter(literal);
        if (letters[position] == '\0')
            return false;
    }
    return true;
}

SScalarForm FormOf(const KTypeInfo &type)
{
    switch (KindOf(type)) {
    case ETypeKind::Enumeration: {
        SScalarForm form{EDumpKind::Bits, 0, {}};
        form.kind = FindLetters(type, form.letters) ? EDumpKind::Bits : EDumpKind::Text;
        return form;
    }
    case ETypeKind::Real: return {EDumpKind::Real, 0, {}};
    case ETypeKind::Physical: return {EDumpKind::Integer, 64, {}};
    default: return {EDumpKind::Integer, 32, {}};
    }
}

}  // namespace

std::string SDumpVariable::Range() const
{
    int left = 0;
    int right = 0;
    int direction = 0;
    if (!type.GetArrayDimensionRanges(0, left, right, direction))
        return {};
    return "[" + std::to_string(left) + ':' + std::to_string(right) + ']';
}

void SDumpEvents::AppendBits(std::span<const std::uint8_t> positions, std::string &text) const
{
    const std::size_t begin = text.size();
    text.resize(begin + positions.size());
    std::ranges::transform(positions, text.begin() + static_cast<std::ptrdiff_t>(begin),
                           [this](std::uint8_t position) { return form.letters[position]; });
}

std::string SDumpEvents::IntegerBits(const CDumpValues &values) const
{
    return VcdBits(values.front().value_or(0), form.integerBits);
}

double SDumpEvents::Real(const CDumpValues &values) const
{
    return std::bit_cast<double>(values.front().value_or(0));
}

std::string SDumpEvents::Text(const CDumpValues &values) const
{
    return Literal(signal.type, static_cast<unsigned>(values.front().value_or(0)));
}

void CDump::Add(IWaveformFile &file, const SFileSignal &signal, const SScalarForm &form)
{
    const bool isScalar = signal.type.IsScalar();
    const char *scalar = isScalar ? signal.type.GetTypeInfoString() : signal.type.GetArrayElementTypeInfo();
    const auto [known, isNew] = m_known.try_emplace({scalar, isScalar, IdentifyEvents(file, signal)}, events.size());
    if (isNew)
        events.push_back({form, signal, isScalar});
    variables.push_back({SplitVcdName(signal.path), signal.type, known->second, signal.direction});
}

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

std::vector<SFileSignal> CDump::Signals() const
{
    std::vector<SFileSignal> signals;
    for (const SDumpEvents &shown : events)
        signals.push_back(shown.signal);
    return signals;
}
