// The manual pages tesk(1) and tesk-formula(7), made of the same texts as the help.
#pragma once

#include <ostream>
#include <string>

#include "tools/help/commandtable.h"

namespace tesk {

/// Writes tesk(1) for man(7) macros. @param version  of the tool
void WriteToolManual(std::ostream &out, const CCommandTable &table, const std::string &version);

/// Writes tesk-formula(7).
void WriteFormulaManual(std::ostream &out, const std::string &version);

}  // namespace tesk
