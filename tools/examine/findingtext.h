// Findings as lines for a reader and as data.
#pragma once

#include <string>

#include <nlohmann/json_fwd.hpp>

#include "tools/examine/finding.h"

namespace tesk {

/// What is found and what would do, with its place in front: "part 2, column 9: unknown time unit "nz" ...; did you mean
/// ns?". One line.
std::string FindingLine(const SFinding &finding);

/// The formula, as much of it as a line holds, and below it a caret under the place. Two lines, the second without a
/// line end; empty for a finding without a place.
/// @param width  columns of a line
std::string FindingPicture(const SFinding &finding, const std::string &formula, std::size_t width);

/// Writes findings to standard error, a line each behind "tesk: warning: " or "tesk: error: "; on a terminal with a
/// picture.
void WriteFindings(const CFindings &findings, const std::string &formula);

/// `[{"severity": "error", "part": 2, "column": 9, "length": 4, "text": ..., "advice": ...}, ...]`; columns count bytes
/// from 1.
nlohmann::json FindingsJson(const CFindings &findings);

}  // namespace tesk
