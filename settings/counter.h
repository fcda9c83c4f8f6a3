// The counter stimulator: its settings, the formulas of a vector's wires, and the stimulus of one wire.
#pragma once

#include <vector>

#include "base/export.h"
#include "core/stimulus.h"
#include "settings/cstr.h"

namespace tesk {

class CCounterStimulusInfoImpl;

/// Settings of a counter stimulator, for the dialogs that compose its formula.
class TESK_API CCounterStimulusInfo {
public:
    /// Counting sequence; 0 is unset. Other values can come from a formula.
    enum Type : int {
        CounterBinary = 1,        ///< adds or subtracts the increment
        CounterGray = 2,          ///< the same in Gray code
        CounterJohnson = 3,       ///< twisted ring
        CounterCircularOne = 4,   ///< a single 1 walks round
        CounterCircularZero = 5,  ///< a single 0 walks round
    };
    /// Counting direction; 0 is unset. Every value but `DirUp` counts down.
    enum Dir : int {
        DirUp = 1,
        DirDown = 2,
    };

    CCounterStimulusInfo();
    CCounterStimulusInfo(const CCounterStimulusInfo &other);
    ~CCounterStimulusInfo();
    /// Deliberate: copies the one pointer and nothing else. Afterwards both objects name the same settings, and the old
    /// ones stay allocated: such objects are for reading, and only one of them may be destroyed.
    CCounterStimulusInfo &operator=(const CCounterStimulusInfo &other);

    const CCounterStimulusInfoImpl *GetImpl() const { return m_impl; }

    Type GetType() const;
    void SetType(Type type);
    Dir GetDir() const;
    void SetDir(Dir direction);
    int GetDisplayRadix() const;
    /// @param radix  2, 8, 10 or 16; 0 for unset. A starting value that is no number in a radix other than 0 is emptied
    void SetDisplayRadix(int radix);
    bool GetReverseBitOrder() const;
    void SetReverseBitOrder(bool reverse);

    // Each getter copies its text as `strncpy` does: without a terminating zero if the text fills the buffer. The
    // buffer may be null. @return whether the text is not empty
    bool GetStartingValue(char *buffer, unsigned size) const;
    bool GetIncrementBy(char *buffer, unsigned size) const;
    bool GetCountPeriod(char *buffer, unsigned size) const;
    /// @param text  digits of the display radix, or with a radix of its own, such as "16#ff"; may be null
    void SetStartingValue(const char *text);
    /// @param text  as a starting value
    void SetIncrementBy(const char *text);
    /// Deliberate: a text that is no time other than 0 with a unit changes nothing, and nobody is told.
    void SetCountPeriod(const char *text);

    /// Writes "\counter\TYPE\<type>\DIR\<direction>\RADIX\<radix>\START\<value>\INC\<increment>\PERIOD\<period>\REV\<0
    /// or 1>", copied as `strncpy` does and so cut at `size` without a word.
    /// @return false, with nothing written, if anything is unset or empty, `size` is 0 or `buffer` null
    bool GenerateFormula(char *buffer, unsigned size) const;
    /// Reads such a formula, in double quotes or not, keywords in any letter case. The radix may also be written "hex",
    /// "dec", "octal" or "binary" in small letters; 0, which any other word reads as, becomes 2, and 1 is refused.
    /// @return false if a part is missing or refused; the parts before it are stored
    bool FromFormula(const char *text);

private:
    TESK_LOCAL bool ValidateStartingValue() const;

    CCounterStimulusInfoImpl *m_impl;
};

/// What a `CCounterStimulusInfo` holds.
class CCounterStimulusInfoImpl {
public:
    CCounterStimulusInfo::Type m_type{};
    CCounterStimulusInfo::Dir m_direction{};
    SimpleString::CStr m_startingValue;
    SimpleString::CStr m_increment;
    SimpleString::CStr m_countPeriod;
    int m_displayRadix = 0;
    bool m_reverseBitOrder = false;
};

}  // namespace tesk

/// Makes the counter of a vector.
class TESK_API CCounterFormulaParser {
public:
    /// Makes the counter that a settings formula describes and appends the formulas of its wires,
    /// "\counter\wire\<wire>\handle\<handle>". The counter lives as long as the process.
    ///
    /// The starting value and the increment are always needed, also by the sequences that have no increment; the
    /// starting value of a Gray counter is a Gray code. A period without a unit is in "ps". A starting value that does
    /// not suit a circular counter is reported and replaced by one whose bit 0 is the odd one.
    /// @param length      wires of the vector; a negative one has none and gets no formula, 0 is refused
    /// @param resolution  femtoseconds per tick; stored in `g_simRes`, even on failure
    /// @return false for a formula that cannot be used, and for a period of less than one tick
    static bool Run(const char *formula, std::vector<SimpleString::CStr> &internalFormulas, int length,
                    long long resolution);
};

/// The stimulus of one wire of a counter, or of a whole signal counted in one. The wires of a vector share one counter,
/// which the first wire to pass its time steps for all of them.
class CCounterStimulus final : public IStimulus {
public:
    CCounterStimulus() = default;
    CCounterStimulus(const CCounterStimulus &) = delete;
    CCounterStimulus &operator=(const CCounterStimulus &) = delete;

    /// Attaches to the counter that a per-wire formula names, or to a new one for a settings formula. That counts the
    /// whole signal of `g_SignalTypeDescription` in 32 bits for an integer, in 512 for a real, in one for any other,
    /// and only a binary counter can do so.
    /// @param startTime  ticks; the counter does not start before it
    /// @return false if there is no such counter; called once
    bool Initialize(const char *formula, long long startTime);

    void Destroy() override;
    bool GetValue(long long time, SimpleString::CStr &value) override;
    long long GetNextEventTime(long long time) override;
    /// The per-wire form; empty before the object is attached.
    void GetFormula(SimpleString::CStr &formula) override;
    bool IsFinishedAt(long long time) override;
    bool IsCounter() const override;
    int CheckSettings(long long *time) override;

private:
    ~CCounterStimulus() = default;

    int m_handle = -1;
    int m_wire = -1;
};
