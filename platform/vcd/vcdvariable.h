// What the declarations of a VCD file say: variables, scopes, the timescale.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace NTARN::NImport {

enum class EVcdKind : std::uint8_t {
    Bit,
    Bus,
    Real,
    String,  // is left out
    Empty,   // of width 0; is left out
};

/// A variable of a file.
struct SVcdVariable {
    EVcdKind kind = EVcdKind::Bit;
    std::uint32_t width = 1;  ///< scalar elements
    int left = 0;             ///< bounds of a bus
    int right = 0;
    std::string_view code;
    std::string name;  ///< without scopes and range, with the index of a bit select or of a memory word
};

/// Reads what stands between "$var" and "$end": type, width, code, name and perhaps a range.
///
/// A range `[l:r]` behind the name, glued to it or not, is that of the variable if its length is the width; so are
/// several ranges whose lengths multiply to the width, which then runs from width - 1 down to 0, as it does without a
/// range. An index `[i]` is a part of the name, and so is all of an escaped name, which begins with a backslash.
/// @param body  the variable's code points into it
/// @throw SVcdFault
SVcdVariable ReadVcdVariable(std::string_view body);

/// The type description of a variable that is not left out.
std::string VcdTypeText(const SVcdVariable &variable);

/// Reads the timescale "10 ns". A missing number is 1; a fraction such as "0.1 ps" is taken where it comes out as whole
/// femtoseconds.
/// @return femtoseconds
/// @throw SVcdFault
long long ReadVcdTimescale(std::string_view body);

/// A time as text in the largest unit in which it is whole, "120 ns".
/// @param resolution  femtoseconds per tick
std::string VcdTimeText(long long ticks, long long resolution);

}  // namespace NTARN::NImport
