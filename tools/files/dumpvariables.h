// What the writers of dumps share: the variables that a dump makes of the signals of a file.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <tuple>
#include <vector>

#include "tools/files/vcdname.h"
#include "waveform/files/waveformfile.h"

enum class EDumpKind { Bits, Integer, Real, Text };

/// How the scalars of a type are written.
struct SScalarForm {
    EDumpKind kind = EDumpKind::Text;
    int integerBits = 32;
    std::array<char, 256> letters = {};  ///< of bits, by position; x where there is none
};

using CDumpValues = tesk::CElementValues;

struct SDumpVariable {
    SVcdName name;
    Kestrin::KTypeInfo type;
    std::size_t events;  ///< which ones it shows
    tesk::ESignalDirection direction = tesk::ESignalDirection::Unknown;

    /// "[7:0]"; empty for one bit and for what is none.
    std::string Range() const;
};

struct SDumpEvents {
    SScalarForm form;
    tesk::SFileSignal signal;  ///< the first of those that have them
    bool isScalar = true;

    long long Width() const { return signal.elementCount; }
    /// Appends a letter for each element, x for one without a value.
    /// @param positions  in the enumeration
    void AppendBits(std::span<const std::uint8_t> positions, std::string &text) const;
    /// Of an integer: two's complement.
    std::string IntegerBits(const CDumpValues &values) const;
    /// Of a real.
    double Real(const CDumpValues &values) const;
    /// Of any other enumeration: the literal.
    std::string Text(const CDumpValues &values) const;
};

/// The variables, and what they show: those that share their events show the same. Scalars and vectors of bits are
/// variables; of any other array each element is one.
class CDump {
public:
    explicit CDump(tesk::IWaveformFile &file);

    std::vector<SDumpVariable> variables;
    std::vector<SDumpEvents> events;

    /// The signals of the events.
    std::vector<tesk::SFileSignal> Signals() const;

private:
    void Add(tesk::IWaveformFile &file, const tesk::SFileSignal &signal, const SScalarForm &form);

    // By the type of the scalars, as a vector or not, and the events of all elements.
    std::map<std::tuple<std::string, bool, std::vector<long long>>, std::size_t> m_known;
};
