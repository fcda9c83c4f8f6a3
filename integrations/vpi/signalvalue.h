// What the values of stimuli are on a signal of the design.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/stimulus.h"
#include "integrations/vpi/designsignal.h"
#include "platform/kestrin.h"

namespace tesk::vpi {

/// The values of one signal as the elements of its type have them, and how they are put.
class CSignalValue {
public:
    /// @param signal       must outlive the object
    /// @param description  of the type by which values are read
    /// @throw CRefusal where values of the type do not fit the signal
    CSignalValue(CDesignSignal &signal, const std::string &description);

    /// Elements, each with a stimulus of its own; 0 where the signal has one as a whole.
    std::size_t CountElements() const { return m_elements; }
    bool IsBitVector() const { return m_isBitVector; }
    /// Of an element, or of the whole.
    const std::string &ElementDescription() const { return m_elementDescription; }

    /// The value of an element, or of the whole; an empty one is none.
    void Set(std::size_t element, std::string_view value);
    bool HasAny() const;

    /// Puts the value. What has none contributes what the signal shows.
    /// @return what is wrong with a value; empty if nothing is
    std::string Put(EStrength strength);

private:
    enum class EReading { Letters, Position, Integer, Real };

    std::string PutLetters(EStrength strength);
    std::string PutNumber(const std::string &text, EStrength strength);
    void PutNumber(long long number, EStrength strength);
    void FillIn();

    CDesignSignal &m_signal;
    Kestrin::KTypeInfo m_type;
    EReading m_reading = EReading::Letters;
    std::size_t m_elements = 0;
    bool m_isBitVector = false;
    std::string m_elementDescription;
    std::string m_letters;  // one for each element, as the simulator has them, or 0 for none
    std::string m_text;     // of a value that is no row of letters; empty for none
    std::string m_fault;    // what is wrong with a letter
    std::string m_put;      // letters that were put last
};

}  // namespace tesk::vpi
