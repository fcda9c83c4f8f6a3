#include "integrations/vpi/signalvalue.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "integrations/vpi/simulator.h"
#include "tools/commandline.h"
#include "tools/play/playedsignal.h"
#include "tools/quote.h"
#include "tools/writers/valuetext.h"

namespace tesk::vpi {

namespace {

using Kestrin::ETypeKind;

[[noreturn]] void RefuseType(const Kestrin::KTypeInfo &type, const CDesignSignal &signal)
{
    throw CRefusal(signal.Name() + ": values are of the type " + Quote(type.GetTypeIdentifier()) +
                   ", which do not fit a signal of the type " +
                   Quote(Kestrin::KTypeInfo(signal.Description().c_str()).GetTypeIdentifier()));
}

// An enumeration whose literals are letters of bits.
bool HasBitLetters(const Kestrin::KTypeInfo &type)
{
    std::array<unsigned char, 2> position = {};
    constexpr const char *Lowest = "0";
    return type.GetBytes_OldFormat(Lowest, position.data(), position.size(), 0, 0);
}

// Where a literal stands in its enumeration; -1 for none.
int PositionOf(const Kestrin::KTypeInfo &type, const std::string &literal)
{
    std::array<unsigned char, 2> position = {};
    if (!type.GetBytes_OldFormat(literal.c_str(), position.data(), position.size(), 0, 0))
        return -1;
    return position[0] | position[1] << 8;
}

std::string BitsOf(long long number, int width)
{
    constexpr int Most = 64;
    const auto bits = static_cast<unsigned long long>(number);
    std::string letters;
    for (int bit = width - 1; bit >= 0; --bit)
        letters += (bits >> std::min(bit, Most - 1) & 1) != 0 ? '1' : '0';
    return letters;
}

template <class TNumber>
bool ReadNumber(const std::string &text, TNumber &number)
{
    const char *end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    return read.ec == std::errc() && read.ptr == end;
}

}  // namespace

CSignalValue::CSignalValue(CDesignSignal &signal, const std::string &description)
    : m_signal(signal), m_type(description.c_str()), m_elementDescription(description)
{
    const bool hasLetters = signal.Contents() == EContents::Letters;
    SPlayedSignal played;
    played.description = description;
    switch (Kestrin::KindOf(m_type)) {
    case ETypeKind::Enumeration:
        m_reading = hasLetters && HasBitLetters(m_type) ? EReading::Letters : EReading::Position;
        if (signal.Width() != 1 && signal.Contents() != EContents::Position)
            RefuseType(m_type, signal);
        break;
    case ETypeKind::Integer:
        m_reading = EReading::Integer;
        if (signal.Contents() == EContents::Real)
            RefuseType(m_type, signal);
        break;
    case ETypeKind::Real:
        m_reading = EReading::Real;
        if (signal.Contents() != EContents::Real)
            RefuseType(m_type, signal);
        break;
    default:
        DescribeElements(played);
        m_elements = played.elements.size();
        m_isBitVector = played.isBitVector;
        if (!hasLetters || !m_isBitVector || m_elements != static_cast<std::size_t>(signal.Width()) ||
            !HasBitLetters(*m_type.GetArrayElementKTypeInfo()))
            RefuseType(m_type, signal);
        m_elementDescription = played.elements.front().description;
    }
    m_values.resize(std::max<std::size_t>(m_elements, 1));
}

void CSignalValue::Set(std::size_t element, std::optional<std::string> value)
{
    m_values[element] = std::move(value);
}

bool CSignalValue::HasAny() const
{
    return std::ranges::any_of(m_values, [](const auto &value) { return value.has_value(); });
}

std::string CSignalValue::Put(EStrength strength)
{
    if (m_reading == EReading::Letters)
        return PutLetters(strength);
    return m_values.front() ? PutNumber(*m_values.front(), strength) : "";
}

// What could not be read becomes unknown.
std::string CSignalValue::Letters(const std::string &value, std::string &fault) const
{
    constexpr std::size_t Width = 1;
    const bool isRead = value.size() == Width && FourStateLetter(value[0]) != 0;
    if (!isRead)
        fault = Quote(value) + " is no value of a bit; it becomes x";
    return isRead ? value : "x";
}

std::string CSignalValue::PutLetters(EStrength strength)
{
    const bool isWhole = std::ranges::all_of(m_values, [](const auto &value) { return value.has_value(); });
    const std::string shown = isWhole ? "" : m_signal.Read();
    std::string letters, fault;
    for (std::size_t i = 0; i < m_values.size(); ++i)
        letters += m_values[i] ? Letters(*m_values[i], fault) : shown.substr(i, 1);
    if (!Simulator().hasUnknown && letters.find_first_not_of("01LHlh") != std::string::npos)
        fault = "this simulator knows 0 and 1 alone; of x and z it makes 0";
    const bool isReleased = letters.find_first_not_of("Zz") == std::string::npos;
    if (strength == EStrength::Drive && isReleased) {
        m_signal.Release();
        return fault;
    }
    if (strength != EStrength::Deposit && m_signal.IsForced() && letters == m_put)
        return fault;
    m_signal.PutLetters(letters, strength);
    m_put = std::move(letters);
    return fault;
}

void CSignalValue::PutNumber(long long number, EStrength strength)
{
    if (m_signal.Contents() == EContents::Letters)
        m_signal.PutLetters(BitsOf(number, m_signal.Width()), strength);
    else
        m_signal.PutInteger(number, strength);
}

std::string CSignalValue::PutNumber(const std::string &text, EStrength strength)
{
    if (m_reading == EReading::Real) {
        double number = 0;
        if (!ReadNumber(text, number))
            return Quote(text) + " is no number, and is left out";
        m_signal.PutReal(number, strength);
        return {};
    }
    if (m_reading == EReading::Position) {
        const int position = PositionOf(m_type, text);
        if (position < 0)
            return Quote(text) + " is no value of " + m_type.GetTypeIdentifier() + ", and is left out";
        PutNumber(position, strength);
        return {};
    }
    long long number = 0;
    if (!ReadNumber(IntegerText(text), number))
        return Quote(text) + " is no whole number, and is left out";
    PutNumber(number, strength);
    return {};
}

}  // namespace tesk::vpi
