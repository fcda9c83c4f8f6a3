// What was read of another tool's words, and the bench file that is made of it.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "tools/bench/bench.h"

namespace tesk {

/// A value of a signal from a time on.
struct SImportedEvent {
    long long time = 0;                ///< femtoseconds
    std::optional<std::string> value;  ///< without one the signal is let go
};

/// What is forced on one signal.
struct SImportedSignal {
    std::string name;  ///< with scopes
    std::string type;  ///< as a bench takes it; empty if it is not told
    EStrength strength = EStrength::Override;
    std::vector<SImportedEvent> events;  ///< in the order in which they were read
    long long repeat = 0;                ///< femtoseconds; 0 for none
    std::optional<long long> cancel;     ///< femtoseconds
    int line = 0;                        ///< of the last command
};

/// What a line does not say so that a bench could.
struct SImportFault {
    ESeverity severity = ESeverity::Error;
    int line = 0;  ///< from 1; 0 if it is of the whole file
    std::string text;
};

/// All that is read of one file.
class CImported {
public:
    std::optional<long long> resolution;  ///< femtoseconds
    std::optional<long long> until;       ///< femtoseconds

    /// The signal of a name, new if there is none.
    SImportedSignal &Signal(const std::string &name);
    SImportedSignal *Find(const std::string &name);

    void Refuse(int line, const std::string &text) { Add({ESeverity::Error, line, text}); }
    void Warn(int line, const std::string &text) { Add({ESeverity::Warning, line, text}); }

    /// Writes the bench, in the order in which the signals came. What cannot be said as a formula is added to the faults, and
    /// left out.
    void WriteBench(std::ostream &out);

    /// By line; the first thousand.
    const std::vector<SImportFault> &Faults() const { return m_faults; }
    /// Faults beyond those.
    std::size_t MoreFaults() const { return m_more; }
    /// Whether any of all is an error.
    bool HasError() const { return m_hasError; }

private:
    long long Resolution() const;
    void Add(SImportFault fault);
    std::string FormulaOf(const SImportedSignal &signal, long long ticks);
    bool Simplify(SImportedSignal &signal);

    std::vector<SImportedSignal> m_signals;
    std::map<std::string, std::size_t> m_places;  // of names
    std::vector<SImportFault> m_faults;
    std::size_t m_more = 0;
    bool m_hasError = false;
};

/// A time such as "10ns" or "50 ps" in femtoseconds.
/// @param unit  femtoseconds of a number without a unit
/// @return nothing if it is no time of 0 or later that 64 bits hold
std::optional<long long> ReadImportedTime(const std::string &text, long long unit);

/// Bits out of a literal, "16#A5", "8'hA5", "'b01", "x"A5"", or out of a row of std_logic letters, as wide as it says.
/// @return nothing for anything else
std::optional<std::string> LiteralBits(const std::string &value);

}  // namespace tesk
