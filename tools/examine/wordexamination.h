// Words of a formula that are read as something else than was meant.
#pragma once

#include <optional>
#include <string>

#include "tools/examine/finding.h"
#include "tools/examine/formulaitems.h"

namespace tesk {

/// A finding at a word.
SFinding FindingAt(const SFormulaWord &word, ESeverity severity, std::string text, std::string advice);

/// The value of an event that looks like a switch, a keyword, a literal of Verilog, a time or two words in one.
std::optional<SFinding> ExamineValueWord(const SFormulaItem &event);

/// A time that is read as 0, that has no unit, or that the resolution has no tick for.
/// @param role  what the time is for, such as "-r"; empty for the time of an event
std::optional<SFinding> ExamineTimeWord(const SFormulaTime &time, const std::string &role, long long resolution);

}  // namespace tesk
