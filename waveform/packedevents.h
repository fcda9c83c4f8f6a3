// Bytes that grow, with events in them that are written one behind the other. Internal.
#pragma once

#include <cstddef>
#include <cstdint>

/// What is behind these 16 bytes in memory are the events.
struct SPackedEvents {
    long long lastTime;
    std::uint32_t used;      // bytes of the events
    std::uint32_t capacity;  // bytes that there is room for

    std::uint8_t *Bytes() { return reinterpret_cast<std::uint8_t *>(this + 1); }
    const std::uint8_t *Bytes() const { return reinterpret_cast<const std::uint8_t *>(this + 1); }
};

/// Makes room for `size` bytes. A quarter more is taken each time, rounded to what allocators give anyway.
/// @param events  null for none yet; to be given to `std::free`
void ReservePacked(SPackedEvents *&events, std::size_t size);

/// Bytes of an event's head.
std::size_t PackedHeadSize(std::uint64_t distance);

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
