// Files of every kind that formulas replay, with random contents.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/soak/dice.h"

namespace soak {

/// A file and what can be asked of it.
struct SFile {
    enum EKind { Vcd, PackedVcd, Fst, Ghw, Stream, Table, Matlab, KindCount };

    EKind kind;
    std::filesystem::path path;
};

/// The signals of a waveform file: one letter, a bus of eight, a real.
inline constexpr const char *LetterName = "tb.clk";
inline constexpr const char *BusName = "tb.dut.bus";
inline constexpr const char *RealName = "tb.r";

/// Writes a file of some kind into a folder, in one case of eight damaged or cut off.
SFile MakeFile(CDice &dice, const std::filesystem::path &folder);

}  // namespace soak
