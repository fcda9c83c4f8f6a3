// Random formulas of all kinds.
#pragma once

#include <string>
#include <vector>

#include "tests/soak/dice.h"
#include "tests/soak/randomfiles.h"

namespace soak {

/// A formula, and the signal that it is for.
struct SFormula {
    std::string text;
    std::string type;
    int elements = 1;  ///< of the signal; a formula for more than one is split
};

/// How many counters a process may make: they live as long as it does.
inline constexpr int MostCounters = 200;

/// @param counters  how many were made; counted up
SFormula MakeFormula(CDice &dice, const std::vector<SFile> &files, int &counters);

}  // namespace soak
