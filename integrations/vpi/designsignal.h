// A signal of the simulated design: what it is, what it holds, and how a value is put on it.
#pragma once

#include <string>

#include <vpi_user.h>

#include "tools/bench/bench.h"

namespace tesk::vpi {

/// What a signal holds.
enum class EContents {
    Letters,  ///< a row of bits, or one
    Integer,  ///< 32 bits
    Real,
    Position  ///< an enumeration of more than two literals, by position
};

/// The letter that the simulator has for a letter of std_logic; 0 for any other character.
char SimulatorLetter(char letter);

class CDesignSignal {
public:
    /// @param object  of the design. @throw CRefusal for anything that cannot be stimulated
    explicit CDesignSignal(vpiHandle object);

    /// With its scopes.
    const std::string &Name() const { return m_name; }
    EContents Contents() const { return m_contents; }
    /// Bits; 1 for what has none.
    int Width() const { return m_width; }
    /// Whether its bits have indices, and those of the outermost ones.
    bool HasIndices() const { return m_isVector && m_contents == EContents::Letters; }
    int Left() const { return m_left; }
    int Right() const { return m_right; }
    /// Type description, as that of a signal in a waveform file.
    std::string Description() const;

    /// @throw CRefusal for a strength that the simulator does not have, or that would have no effect
    void CheckStrength(EStrength strength) const;

    /// The letters that it shows, left bound first; of an integer its bits.
    std::string Read() const;
    /// Of an integer, or of the position of an enumeration.
    long long ReadInteger() const { return Get(vpiIntVal).value.integer; }
    double ReadReal() const { return Get(vpiRealVal).value.real; }

    /// Puts a value. @param letters  as many as there are bits, each as `SimulatorLetter` gives it
    void PutLetters(const std::string &letters, EStrength strength);
    /// An integer, or where the simulator takes numbers up to 32 bits.
    void PutInteger(long long number, EStrength strength);
    void PutReal(double number, EStrength strength);

    bool IsForced() const { return m_isForced; }
    /// Gives a forced signal back to its drivers.
    void Release();
    /// Is from now on what forces the signal, if another object did.
    void TakeOver(CDesignSignal &other);

private:
    void Put(s_vpi_value &value, EStrength strength);
    s_vpi_value Get(PLI_INT32 format) const;

    vpiHandle m_object;
    PLI_INT32 m_type;
    std::string m_name;
    EContents m_contents = EContents::Letters;
    int m_width = 1;
    bool m_isVector = false;
    int m_left = 0;
    int m_right = 0;
    bool m_isForced = false;
    std::string m_before;  // letters before it was forced, where a release needs a value
    long long m_integerBefore = 0;
};

}  // namespace tesk::vpi
