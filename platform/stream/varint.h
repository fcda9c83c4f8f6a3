// Numbers of 7 bits a byte, lowest bits first; bit 7 is set in all bytes but the last.
#pragma once

#include <cstdint>
#include <string>

namespace Morvel {

inline void AppendVarint(std::string &bytes, std::uint64_t number)
{
    for (; number > 0x7F; number >>= 7)
        bytes += static_cast<char>(number | 0x80);
    bytes += static_cast<char>(number);
}

/// Takes a number off the front. @return false, with `next` anywhere up to `end`, if it is cut off or has more than 64 bits
inline bool TakeVarint(const char *&next, const char *end, std::uint64_t &number)
{
    number = 0;
    for (unsigned shift = 0; shift < 64 && next != end; shift += 7) {
        const auto byte = static_cast<std::uint8_t>(*next++);
        if (shift == 63 && byte > 1)
            return false;
        number |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
        if ((byte & 0x80) == 0)
            return true;
    }
    return false;
}

}  // namespace Morvel
