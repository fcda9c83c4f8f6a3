// A bench file read by a command that uses it.
#pragma once

#include <string>
#include <vector>

#include "tools/bench/bench.h"

namespace tesk {

/// Whether a bench cannot be used for its faults. A formula that cannot mean what it says is taken by the letter.
bool CannotBeUsed(const std::vector<SBenchFault> &faults);

/// Reads a bench file, and tells its faults on standard error.
/// @param isStrict  refuses a formula, too, that cannot mean what it says
/// @param use       what would be done with the bench, such as "played"
/// @throw CRefusal if the bench cannot be used
SBench ReadToldBench(const std::string &path, bool isStrict, const std::string &use);

}  // namespace tesk
