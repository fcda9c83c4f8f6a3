// Numbers of a MAT-file as the bits of a signal.
#pragma once

#include <string>

namespace tesk {

/// How the numbers of a signal are written.
struct SNumberForm {
    int width = 1;     ///< number of bits
    int fraction = 0;  ///< how many of them stand behind the binary point; may be any number
    bool isSigned = false;
};

/// Writes a number in two's complement, the highest bit first: rounded half up by its magnitude, and cut to the range
/// of the form. With one bit it is "0" for 0 and for no number, else "1". No number (NaN) counts as 0.
std::string SaturateToBits(double value, const SNumberForm &form);

/// The text of a Verilog signal: all bits. Of a form without a sign a negative number counts as 0.
/// @return empty for no usable value, which deliberately is also a 0
std::string VerilogNumberText(double value, const SNumberForm &form);

/// The text of a VHDL signal: the bits from the first that is not 0 on; no number gives "X" for each. Deliberate: a form
/// without a sign is cut to the range of one with, so that its highest bit is never set.
/// @return empty for no usable value, which deliberately is also a 0
std::string VhdlNumberText(double value, const SNumberForm &form);

}  // namespace tesk
