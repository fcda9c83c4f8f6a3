// The simulated design: its scopes and the names in them.
#pragma once

#include <string>
#include <vector>

#include <vpi_user.h>

namespace tesk::vpi {

/// The name of an object with its scopes; empty if it has none.
std::string FullName(vpiHandle object);

/// Finds a signal by its name with its scopes, such as "tb.dut.count", "tb.g[1].k" or "tb.\\a+b". Brackets are as good as
/// parentheses, an escaped or extended identifier is taken with its backslashes or without, and letter case counts only
/// where it does for the simulator.
/// @throw CRefusal that names what is not there and what is nearest
vpiHandle FindObject(const std::string &name);

/// The signals directly in a scope, with all scopes in their names.
std::vector<std::string> SignalsIn(const std::string &scope);
/// Those of them that are inputs of it, and those that are outputs.
std::vector<std::string> InputsOf(const std::string &scope);
std::vector<std::string> OutputsOf(const std::string &scope);

/// Whether a signal is an input of the scope in which it is.
bool IsInput(vpiHandle object);
/// Whether it is one of the top of the design: then nothing else drives it.
bool IsInputOfTop(vpiHandle object);

}  // namespace tesk::vpi
