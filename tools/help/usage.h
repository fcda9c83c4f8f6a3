// Words of a command line that are neither commands nor options, told with what was probably meant.
#pragma once

#include <string>
#include <vector>

#include "tools/help/commandtable.h"

namespace tesk {

/// Why the words behind "tesk" cannot be used. @return empty if command and options are all known
std::string FindUsageFault(const std::vector<std::string> &words, const CCommandTable &table);

/// The names of the commands that are listed.
std::vector<std::string> CommandNames(const CCommandTable &table);

}  // namespace tesk
