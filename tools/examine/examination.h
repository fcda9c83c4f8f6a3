// The second reading of a formula, as a careful reader would: what it drops, misreads or never plays.
#pragma once

#include <string>

#include "tools/examine/finding.h"

namespace tesk {

/// A formula, and what is known of where it is played.
struct SExamined {
    std::string formula;
    std::string type;             ///< type description of the signal; empty if it is not known
    long long resolution = 1000;  ///< femtoseconds per tick
    long long start = 0;          ///< ticks; when the stimulator is applied
};

/// Reads a formula of any kind and lists what it finds, in the order of the formula. It never changes what is played; a
/// formula that is right gives no finding.
CFindings ExamineFormula(const SExamined &examined);

}  // namespace tesk
