#include "integrations/vpi/signalvalue.h"

#include <algorithm>
#include <array>
#include <charconv>

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
    m_letters.resize(std::max<std::size_t>(m_elements, 1));
}

// What is no letter becomes unknown.
void CSignalValue::Set(std::size_t element, std::string_view value)
{
    if (m_reading != EReading::Letters) {
        m_text = value;
        return;
    }
    if (value.empty()) {
        m_letters[element] = 0;
        return;
    }
    const char letter = value.size() == 1 ? SimulatorLetter(value[0]) : '\0';
    m_letters[element] = letter != 0 ? letter : SimulatorLetter('X');
    if (letter == 0)
        m_fault = Quote(std::string(value)) + " is no value of a bit; it becomes x";
    else if (!Simulator().hasUnknown && value.find_first_of("01LHlh") == std::string_view::npos)
        m_fault = "this simulator knows 0 and 1 alone; of x and z it makes 0";
}

bool CSignalValue::HasAny() const
{
    return m_reading == EReading::Letters ? m_letters.find_first_not_of('\0') != std::string::npos : !m_text.empty();
}

std::string CSignalValue::Put(EStrength strength)
{
    return m_reading == EReading::Letters ? PutLetters(strength) : PutNumber(m_text, strength);
}

void CSignalValue::FillIn()
{
    const std::string shown = m_signal.Read();
    for (std::size_t i = 0; i < m_put.size(); ++i) {
        if (m_put[i] == 0)
            m_put[i] = shown[i];
    }
}

std::string CSignalValue::PutLetters(EStrength strength)
{
    if (strength == EStrength::Drive && m_letters.find_first_not_of("Zz") == std::string::npos)
        m_signal.Release();
    else if (strength == EStrength::Deposit || !m_signal.IsForced() || m_letters != m_put) {
        m_put = m_letters;
        if (m_put.find('\0') != std::string::npos)
            FillIn();
        m_signal.PutLetters(m_put, strength);
    }
    return m_fault;
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
