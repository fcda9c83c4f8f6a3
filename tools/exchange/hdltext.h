// What the hardware description languages have in common: a process for each signal.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/exchange/course.h"
#include "tools/exchange/losses.h"

namespace tesk {

/// Writes the statements of one signal's process.
class IHdlProcess {
public:
    virtual ~IHdlProcess() = default;

    virtual void Wait(long long ticks) = 0;
    /// @param value  without one the signal is not driven
    virtual void Assign(const std::optional<std::string> &value) = 0;
    /// @param rounds  for ever without one
    virtual void BeginLoop(std::optional<long long> rounds) = 0;
    virtual void EndLoop() = 0;
    /// Steps the count, and shows it.
    virtual void Step() = 0;
};

/// Writes all that a signal does. Changes to the value that it has already are left out.
void WriteProcess(const SCourse &course, IHdlProcess &process);

/// Letters of std_logic that are written as others, and a value that is none, told as losses at the time at which they stand
/// first.
/// @param instead    for each letter of "UX01ZWLH-" the one that is written
/// @param undriven   what is written where the signal is not driven; empty if there is a place for that
void TellLostLetters(const SCourse &course, long long resolution, std::string_view instead, const std::string &undriven,
                     CLosses &losses);

/// All changes of a course, loops once. The first is that at 0, where there may be no value.
std::vector<SChange> AllChanges(const SCourse &course);

/// Names for the ports of a module, in the order of the signals: the last part of a name, or if that stands twice all but the
/// scopes that all have in common, with "_" between.
/// @param isCaseSensitive  whether names differ that differ in letter case
std::vector<std::string> PortNames(const SCourses &courses, bool isCaseSensitive);

/// A name that none of the ports has, whatever the letter case.
std::string FreeName(std::string name, const std::vector<std::string> &ports);

/// A number with a point, and as many digits as it needs to read back the same.
std::string RealLiteral(double number);

/// A word of letters, digits and "_" that does not begin with a digit.
bool IsBasicWord(std::string_view text);

}  // namespace tesk
