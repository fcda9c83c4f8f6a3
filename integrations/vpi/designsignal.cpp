#include "integrations/vpi/designsignal.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

#include "integrations/vpi/design.h"
#include "integrations/vpi/simulator.h"
#include "platform/types/dumptypes.h"
#include "tools/commandline.h"
#include "tools/play/typeargument.h"
#include "tools/writers/valuetext.h"

namespace tesk::vpi {

namespace {

constexpr int IntegerBits = 32, PositionBits = 8;

// Objects by their type: what can be stimulated, and what is said of the others.
struct SObject {
    PLI_INT32 type;
    const char *refusal;  // null for a signal
};
constexpr SObject Objects[] = {
    {vpiNet, nullptr},
    {vpiReg, nullptr},
    {vpiIntegerVar, nullptr},
    {vpiTimeVar, nullptr},
    {vpiRealVar, nullptr},
    {vpiMemoryWord, nullptr},
    {vpiConstant, "is a constant"},
    {vpiParameter, "is a constant"},
    {vpiNetBit, "is a bit of a vector; stimulate the vector as a whole"},
    {vpiRegBit, "is a bit of a vector; stimulate the vector as a whole"},
    {vpiPartSelect, "is a part of a vector; stimulate the vector as a whole"},
    {vpiMemory, "is an array; stimulate its words, one by one"},
    {vpiNetArray, "is an array; stimulate its words, one by one"},
    {vpiRegArray, "is an array; stimulate its words, one by one"},
    {vpiModule, "is a scope; write the name of a signal in it"},
    {vpiGenScope, "is a scope; write the name of a signal in it"},
    {vpiNamedBegin, "is a scope; write the name of a signal in it"},
};

// GHDL tells of a constant the scope alone.
std::string NameOf(vpiHandle object)
{
    const std::string full = FullName(object);
    const char *last = vpi_get_str(vpiName, object);
    return last == nullptr || full.ends_with(last) ? full : full + "." + last;
}

// An expression has no name, and to ask one for it ends Icarus Verilog.
PLI_INT32 CheckType(vpiHandle object)
{
    const PLI_INT32 type = vpi_get(vpiType, object);
    const auto row = std::ranges::find(Objects, type, &SObject::type);
    if (row == std::end(Objects))
        throw CRefusal("that is no signal");
    const bool hasName = type != vpiConstant || !Simulator().hasSystemTasks;
    if (row->refusal != nullptr)
        throw CRefusal((hasName ? NameOf(object) : "that") + " " + row->refusal);
    return type;
}

std::optional<int> Bound(PLI_INT32 side, vpiHandle object)
{
    const vpiHandle bound = vpi_handle(side, object);
    if (bound == nullptr)
        return std::nullopt;
    s_vpi_value value = {};
    value.format = vpiIntVal;
    vpi_get_value(bound, &value);
    vpi_free_object(bound);
    return value.value.integer;
}

bool IsVector(vpiHandle object, PLI_INT32 type, int width)
{
    // Of a word in an array Icarus Verilog does not tell it.
    return type == vpiMemoryWord ? width > 1 : vpi_get(vpiVector, object) == 1;
}

// VHDL has integers and enumerations among its signals, which are no vectors and have many bits.
EContents ContentsOf(PLI_INT32 type, bool isVector, int width)
{
    if (type == vpiRealVar)
        return EContents::Real;
    if (type == vpiIntegerVar || (!isVector && width == IntegerBits))
        return EContents::Integer;
    return !isVector && width == PositionBits ? EContents::Position : EContents::Letters;
}

PLI_INT32 FlagOf(EStrength strength)
{
    return strength == EStrength::Deposit ? vpiNoDelay : vpiForceFlag;
}

char FindSimulatorLetter(char letter)
{
    const char four = FourStateLetter(letter);
    if (four == 0)
        return 0;
    if (!Simulator().hasUnknown)
        return four == '1' ? '1' : '0';
    if (!Simulator().hasNineValues)
        return four;
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

std::array<char, 256> SimulatorLetters()
{
    std::array<char, 256> letters = {};
    for (std::size_t code = 0; code < letters.size(); ++code)
        letters[code] = FindSimulatorLetter(static_cast<char>(code));
    return letters;
}

// A bit alone as the interface has it.
PLI_INT32 ScalarOf(char letter)
{
    switch (letter) {
    case '0': return vpi0;
    case '1': return vpi1;
    case 'z': return vpiZ;
    default: return vpiX;
    }
}

// Four-state letters as the interface has them, the last one first, in bits of two words: 0 is 00, 1 is 10, z 01, x 11.
s_vpi_vecval *Pack(const std::string &letters)
{
    using CWord = decltype(s_vpi_vecval::aval);
    constexpr std::size_t WordBits = 32;
    static std::vector<s_vpi_vecval> s_words;
    s_words.assign((letters.size() + WordBits - 1) / WordBits, {});
    for (std::size_t bit = 0; bit < letters.size(); ++bit) {
        const char letter = letters[letters.size() - 1 - bit];
        const std::uint32_t mask = std::uint32_t{1} << bit % WordBits;
        s_vpi_vecval &word = s_words[bit / WordBits];
        word.aval =
            static_cast<CWord>(static_cast<std::uint32_t>(word.aval) | (letter == '1' || letter == 'x' ? mask : 0));
        word.bval =
            static_cast<CWord>(static_cast<std::uint32_t>(word.bval) | (letter == 'z' || letter == 'x' ? mask : 0));
    }
    return s_words.data();
}

}  // namespace

char SimulatorLetter(char letter)
{
    static const std::array<char, 256> s_letters = SimulatorLetters();
    return s_letters[static_cast<unsigned char>(letter)];
}

CDesignSignal::CDesignSignal(vpiHandle object) : m_object(object), m_type(CheckType(object))
{
    m_name = FullName(object);
    m_width = m_type == vpiRealVar ? 1 : std::max(vpi_get(vpiSize, object), 1);
    m_isVector = m_type != vpiRealVar && IsVector(object, m_type, m_width);
    m_contents = ContentsOf(m_type, m_isVector, m_width);
    m_left = m_isVector ? Bound(vpiLeftRange, object).value_or(m_width - 1) : 0;
    m_right = m_isVector ? Bound(vpiRightRange, object).value_or(0) : 0;
}

std::string CDesignSignal::Description() const
{
    switch (m_contents) {
    case EContents::Integer: return ReadTypeArgument("integer");
    case EContents::Position: return ReadTypeArgument("natural");
    case EContents::Real: return std::string(Kestrin::RealTypeText);
    default: return m_isVector ? Kestrin::BusTypeText(m_left, m_right) : std::string(Kestrin::StdLogicTypeText);
    }
}

void CDesignSignal::CheckStrength(EStrength strength) const
{
    const bool isTopInput = IsInputOfTop(m_object);
    if (strength != EStrength::Deposit && !Simulator().hasForce && !isTopInput)
        throw CRefusal(m_name + ": this simulator cannot force values; give the strength \"deposit\"");
    if (strength != EStrength::Deposit && m_type == vpiMemoryWord)
        throw CRefusal(m_name + " is a word of an array, which cannot be forced; give it the strength \"deposit\"");
    if (strength == EStrength::Deposit && !isTopInput && IsInput(m_object))
        throw CRefusal(m_name +
                       " is an input that its port drives, and a value that is only deposited is lost; stimulate the "
                       "signal at the port, or give the strength \"override\"");
}

s_vpi_value CDesignSignal::Get(PLI_INT32 format) const
{
    s_vpi_value value = {};
    value.format = format;
    vpi_get_value(m_object, &value);
    return value;
}

std::string CDesignSignal::Read() const
{
    const char *letters = Get(vpiBinStrVal).value.str;
    std::string read = letters != nullptr ? letters : "";
    read.resize(static_cast<std::size_t>(m_width), 'x');
    return read;
}

void CDesignSignal::Put(s_vpi_value &value, EStrength strength)
{
    const bool forces = strength != EStrength::Deposit && Simulator().hasForce;
    if (forces && !m_isForced && Simulator().releaseDeposits) {
        if (m_contents == EContents::Letters)
            m_before = Read();
        else
            m_integerBefore = Get(vpiIntVal).value.integer;
    }
    vpi_put_value(m_object, &value, nullptr, forces ? FlagOf(strength) : vpiNoDelay);
    m_isForced = m_isForced || forces;
}

void CDesignSignal::PutLetters(const std::string &letters, EStrength strength)
{
    s_vpi_value value = {};
    if (letters.size() == 1 && Simulator().takesNumbers) {
        value.format = vpiScalarVal;
        value.value.scalar = ScalarOf(letters[0]);
    } else if (Simulator().takesNumbers) {
        value.format = vpiVectorVal;
        value.value.vector = Pack(letters);
    } else {
        value.format = vpiBinStrVal;
        value.value.str = Text(letters.c_str());
    }
    Put(value, strength);
}

void CDesignSignal::PutInteger(long long number, EStrength strength)
{
    s_vpi_value value = {};
    value.format = vpiIntVal;
    value.value.integer = static_cast<PLI_INT32>(number);
    Put(value, strength);
}

void CDesignSignal::PutReal(double number, EStrength strength)
{
    s_vpi_value value = {};
    value.format = vpiRealVal;
    value.value.real = number;
    Put(value, strength);
}

void CDesignSignal::TakeOver(CDesignSignal &other)
{
    m_isForced = std::exchange(other.m_isForced, false);
    m_before = other.m_before;
    m_integerBefore = other.m_integerBefore;
}

void CDesignSignal::Release()
{
    if (!m_isForced)
        return;
    s_vpi_value value = {};
    value.format = vpiIntVal;
    if (m_contents == EContents::Real)
        value = Get(vpiRealVal);
    else if (m_contents == EContents::Letters) {
        value.format = vpiBinStrVal;
        value.value.str = m_before.data();
    } else
        value.value.integer = static_cast<PLI_INT32>(m_integerBefore);
    vpi_put_value(m_object, &value, nullptr, vpiReleaseFlag);
    m_isForced = false;
}

}  // namespace tesk::vpi
