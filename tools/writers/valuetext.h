// Values as they are shown: integers in decimal, those of buses in a radix.
#pragma once

#include <optional>
#include <set>
#include <string>

#include "tools/writers/waveform.h"

namespace tesk {

/// `Analog` shows numbers, signed where the type is, which pictures draw as curves; `AnalogSigned` always signed ones.
enum class ERadix { Binary, Octal, Decimal, Hexadecimal, Signed, Analog, AnalogSigned };

/// The words for them, of the option --radix.
std::set<std::string> RadixNames();
/// @return nothing for another word
std::optional<ERadix> RadixOf(const std::string &name);

/// The 4-state letter of a std_logic value, one of 01xz; 0 for any other character.
char FourStateLetter(char c);

/// Whether a text is a row of std_logic values.
bool IsBitText(const std::string &value);

/// Whether it is a type of vectors whose elements are std_logic, bit or the like. @param description  of the type
bool IsBitVectorType(const std::string &description);

/// Whether values of a type are drawn as a band, however short they are: those of all types but enumerations.
/// @param description  of the type; empty for none
bool IsBusType(const std::string &description);

/// Bits as a number. A digit, in decimal the whole number, of unknown bits only is "x" and of Z only "z"; where just some of
/// them are, it is "X", or "Z" if the others are known.
/// @param bits  std_logic values
std::string BitsInRadix(const std::string &bits, ERadix radix);

/// The bits of the widest bus that can be shown in decimal: the work grows with their square.
constexpr std::size_t WidestDecimal = 4096;

/// A value of an integer type in decimal: "2#101" is "5"; 32 bits are in two's complement. Any other text stays.
std::string IntegerText(const std::string &value);

/// Whether vectors of a type count in two's complement: those of Verilog that say so, and "signed" of VHDL.
/// @param description  of the type
bool IsSignedType(const std::string &description);

/// A text that is a decimal number. @return nothing for any other
std::optional<double> NumberOf(const std::string &value);

/// Shows the values of buses in a radix: of signals of vectors of bits, and of those without a type that have only such
/// values. @throw CRefusal if one is too wide
void ShowInRadix(SWaveform &waveform, ERadix radix);

/// Has pictures draw signals of reals as curves.
void DrawRealsAsCurves(SWaveform &waveform);

}  // namespace tesk
