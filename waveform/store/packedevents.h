// How packed events begin, and how their memory grows.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tesk {

inline constexpr std::size_t LargestPackedHead = 10;

inline std::size_t PackedHeadSize(std::uint64_t distance)
{
    std::size_t size = 1;
    for (distance >>= 3; distance != 0; distance >>= 7)
        ++size;
    return size;
}

/// An event begins with a code below 16 and the time since the one before: the first byte has the code, 3 bits of the
/// distance and whether more follow; each further byte has 7 bits of it.
/// @return what is behind
inline std::uint8_t *WritePackedHead(std::uint8_t *to, std::uint8_t code, std::uint64_t distance)
{
    *to = static_cast<std::uint8_t>(code | (distance & 7) << 4);
    for (distance >>= 3; distance != 0; distance >>= 7) {
        *to++ |= 0x80;
        *to = distance & 0x7F;
    }
    return to + 1;
}

inline const std::uint8_t *ReadPackedHead(const std::uint8_t *from, std::uint8_t &code, std::uint64_t &distance)
{
    code = *from & 0xF;
    distance = *from >> 4 & 7;
    for (unsigned shift = 3; (*from++ & 0x80) != 0; shift += 7)
        distance |= static_cast<std::uint64_t>(*from & 0x7F) << shift;
    return from;
}

/// Has the room for packed bytes grown, by a quarter at least and to what allocators give anyway.
/// @param bytes  from `std::malloc`; may be null
/// @param used   of them, beside a header
/// @return the room, without the header
/// @throw std::bad_alloc; then all is as it was
std::uint32_t GrowPacked(void *&bytes, std::size_t header, std::size_t used, std::size_t wanted);

}  // namespace tesk
