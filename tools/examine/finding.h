// What an examination of a formula finds.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tesk {

enum class ESeverity {
    Warning,  ///< the formula may be meant so
    Error     ///< the formula cannot mean this
};

/// One thing that a formula drops, misreads or never plays.
struct SFinding {
    ESeverity severity = ESeverity::Warning;
    int part = 0;            ///< between commas, from 1; 0 for the formula as a whole
    std::size_t column = 0;  ///< byte of the formula at which it stands, from 0
    std::size_t length = 0;  ///< bytes; 0 for the formula as a whole
    std::string text;        ///< what the library makes of it
    std::string advice;      ///< what was probably meant, or what would do; may be empty
    bool isRefused = false;  ///< what would be shown is not what was asked for: the tool does not play it
};

using CFindings = std::vector<SFinding>;

/// Whether one of them is an error.
bool HasError(const CFindings &findings);

}  // namespace tesk
