// Eight bits of a bus at once, as the positions of their elements in std_logic.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tesk {

inline constexpr std::size_t BitGroup = 8;

/// The positions of 0 or 1 for the bits of a byte, the highest bit first.
inline constexpr std::array<std::array<std::uint8_t, BitGroup>, 256> BitGroupPositions = [] {
    constexpr unsigned Zero = 2;
    std::array<std::array<std::uint8_t, BitGroup>, 256> groups{};
    for (unsigned byte = 0; byte < 256; ++byte) {
        for (unsigned i = 0; i < BitGroup; ++i)
            groups[byte][i] = static_cast<std::uint8_t>(Zero + (byte >> (BitGroup - 1 - i) & 1));
    }
    return groups;
}();

}  // namespace tesk
