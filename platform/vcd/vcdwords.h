// What single words of a VCD file mean.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace NTARN::NImport {

/// Takes the next word, cut by blanks, off the front of `rest`; empty at its end.
std::string_view TakeVcdWord(std::string_view &rest);

/// A word of the file for a message, in quotes, shortened, without unprintable bytes.
std::string QuoteVcdWord(std::string_view word);

enum class EVcdCommand { Skip, Timescale, Scope, Upscope, Variable, EndDefinitions, Section, End, Close };

struct SVcdCommand {
    std::string_view name;  ///< "$var"; static
    EVcdCommand command;
};

/// @return null for an unknown command
const SVcdCommand *FindVcdCommand(std::string_view name);

/// For each byte the position of a value letter in "UX01ZWLH-"; `NoVcdLetter` for what is no letter.
using CVcdLetters = std::array<std::uint8_t, 256>;
inline constexpr std::uint8_t NoVcdLetter = 255;

/// The nine letters in any letter case; '?' is '-'.
extern const CVcdLetters VcdLetters;
/// The letters of a port (IEEE 1364-2005, 18.4.3.1): the level without the direction.
extern const CVcdLetters VcdPortLetters;

inline std::uint8_t VcdPosition(char letter, const CVcdLetters &letters)
{
    return letters[static_cast<unsigned char>(letter)];
}

/// Reads a time: digits, and perhaps a point and more of them, which round it.
/// @param isRounded  receives whether that changed it
/// @return false if it does not fit 63 bits
bool ReadVcdTime(std::string_view text, long long &time, bool &isRounded);
/// Reads a real value. What is too large is infinite, what is too small 0.
bool ReadVcdReal(std::string_view text, double &value);

}  // namespace NTARN::NImport
