// Numbers in groups of 7 bits, the lowest first; bit 7 is set in all bytes but the last.
#pragma once

#include <cstdint>

namespace NTARN {

/// A number as its groups tell it.
struct SLeb128 {
    std::uint64_t number = 0;
    unsigned bits = 0;  ///< 7 for each group

    /// In two's complement: the highest bit written is the sign.
    std::int64_t Signed() const
    {
        const bool isNegative = bits < 64 && (number >> (bits - 1) & 1) != 0;
        return static_cast<std::int64_t>(isNegative ? number | ~std::uint64_t{0} << bits : number);
    }
};

/// Takes the groups of one number.
/// @param next  gives the next byte
/// @return false if the number has more than 64 bits
template <class TNext>
bool TakeLeb128(TNext next, SLeb128 &taken)
{
    for (;;) {
        const std::uint8_t byte = next();
        const std::uint64_t group = byte & 0x7FU;
        if (taken.bits > 63 || (taken.bits == 63 && group > 1 && group != 0x7F))
            return false;
        taken.number |= group << taken.bits;
        taken.bits += 7;
        if ((byte & 0x80) == 0)
            return true;
    }
}

}  // namespace NTARN
