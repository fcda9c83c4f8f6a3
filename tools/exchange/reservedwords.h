// Words that languages keep for themselves.
#pragma once

#include <string_view>

namespace tesk {

/// Whether it is a keyword of SystemVerilog (IEEE 1800-2017, table B.1).
bool IsVerilogWord(std::string_view word);

/// Whether it is a reserved word of VHDL (IEEE 1076-2008, 15.10), in any letter case.
bool IsVhdlWord(std::string_view word);

}  // namespace tesk
