// How the readers of waveform files spell the names of scopes and signals, so that a formula can take them.
#pragma once

#include <string>
#include <string_view>

#include "base/extendedid.h"

namespace NTARN {

/// Spells the name of a scope or of a signal, without what is in brackets behind it. "(" and ")" become "[" and "]",
/// since a formula takes both for the same. A Verilog escaped identifier, `\a+b`, is spelled as an extended one, `\a+b\`,
/// with every backslash inside it doubled. What is spelled so already stays.
std::string SpellSignalName(std::string_view name);

/// The Verilog escaped identifier, without the blank that ends it, that `SpellSignalName` spells as `name`; `name`
/// itself if there is none.
std::string VerilogName(std::string_view name);

}  // namespace NTARN
