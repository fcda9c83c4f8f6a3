// The letters in which dumps write the values of bits, and what they mean as std_logic.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace NTARN {

/// Letters that mean the same value.
struct SStateLetters {
    std::string_view letters;
    std::uint8_t position;  ///< of the value in `tesk::StdLogicLetters`
};

/// The nine letters in any letter case; '?' is '-'.
inline constexpr SStateLetters ValueStates[] = {{"Uu", 0}, {"Xx", 1}, {"0", 2},  {"1", 3}, {"Zz", 4},
                                                {"Ww", 5}, {"Ll", 6}, {"Hh", 7}, {"-?", 8}};
/// The states of a port (IEEE 1364-2005, 18.4.3.1), driven from outside, from inside or from both: the level without the
/// direction.
inline constexpr SStateLetters PortStates[] = {{"NX?AaBbCc", 1}, {"DdLl0", 2}, {"UuHh1", 3}, {"ZTFf", 4}};

/// For each byte the position of its value.
using CStatePositions = std::array<std::uint8_t, 256>;

/// @param otherwise  for a byte that is no letter
constexpr CStatePositions PositionsOf(std::span<const SStateLetters> states, std::uint8_t otherwise)
{
    CStatePositions positions{};
    positions.fill(otherwise);
    for (const SStateLetters &state : states)
        for (const char letter : state.letters)
            positions[static_cast<unsigned char>(letter)] = state.position;
    return positions;
}

}  // namespace NTARN
