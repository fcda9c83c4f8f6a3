// A bench on the command line: formulas with the names of their signals.
#pragma once

#include <string>
#include <vector>

#include "tools/bench/bench.h"

namespace tesk {

/// Whether an argument is NAME=FORMULA or NAME:TYPE=FORMULA. NAME is an identifier of VHDL or Verilog, or a path of such with
/// points between, each with indices or none: `tb.dut.data[3]`. A blank in front makes any text a mere formula.
bool IsNamedFormula(const std::string &argument);

/// The bench that such arguments describe. All faults are told, not only the first.
/// @param resolution  femtoseconds per tick
/// @param start       ticks; when all stimulators are applied
/// @throw CWrongUsage for an argument that is none
SBench BenchOfArguments(const std::vector<std::string> &arguments, long long resolution, long long start,
                        std::vector<SBenchFault> &faults);

}  // namespace tesk
