// Names with scopes, as users and simulators write them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tesk::vpi {

/// The parts between dots. An escaped identifier, "\..." up to a blank, a further backslash or the end, is one part whatever
/// is in it.
std::vector<std::string> SplitHierarchicalName(std::string_view name);

/// The name as Verilator keeps it: what is no letter, digit or underscore has a code in the place.
std::string EncodedName(const std::vector<std::string> &parts);

/// The name of which Verilator made this one, brackets at least; any other is left as it is.
std::string DecodedName(std::string name);

/// Whether two names of one part are the same: brackets are as good as parentheses, an escaped identifier is the same as its
/// letters, and letter case counts only where the simulator has it count.
bool IsSameName(std::string_view left, std::string_view right);

}  // namespace tesk::vpi
