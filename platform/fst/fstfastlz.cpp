// FastLZ, levels 1 and 2: runs of literals and copies of what was unpacked before.
#include <algorithm>
#include <cstdint>
#include <span>

#include "platform/fst/fstunpack.h"

namespace NTARN {
namespace {

constexpr std::size_t NearestFar = 8191;  // level 2: the distance from which two more bytes hold it

struct SMatch {
    std::size_t length;
    std::size_t distance;  // from 1
};

// The rest of a length that does not fit its three bits.
std::size_t MoreLength(CFstBytes &packed, int level)
{
    std::size_t more = 0;
    std::uint8_t byte = 0;
    do {
        byte = packed.Byte();
        more += byte;
    } while (level == 2 && byte == 255);
    return more;
}

SMatch TakeMatch(CFstBytes &packed, std::uint8_t control, int level)
{
    SMatch match = {std::size_t{control} / 32 + 2, 0};
    if (control / 32 == 7)
        match.length += MoreLength(packed, level);
    const std::size_t high = control % 32;
    const std::size_t low = packed.Byte();
    match.distance = high * 256 + low + 1;
    if (level == 2 && high == 31 && low == 255) {
        const std::size_t far = packed.Byte();
        match.distance = NearestFar + far * 256 + packed.Byte() + 1;
    }
    return match;
}

// What is unpacked, and how much of it is filled.
class COutput {
public:
    explicit COutput(std::span<std::uint8_t> bytes) : m_bytes(bytes) {}

    bool IsFull() const { return m_filled == m_bytes.size(); }

    void Append(SFstSpan literals)
    {
        std::ranges::copy(literals, Room(literals.size()).begin());
        m_filled += literals.size();
    }

    // A copy may run into itself: it then repeats its beginning.
    void Repeat(const SMatch &match)
    {
        const std::span<std::uint8_t> room = Room(match.length);
        if (match.distance > m_filled)
            throw XFstDamage();
        for (std::size_t i = 0; i < room.size(); ++i, ++m_filled)
            room[i] = m_bytes[m_filled - match.distance];
    }

private:
    std::span<std::uint8_t> Room(std::size_t size) const
    {
        if (size > m_bytes.size() - m_filled)
            throw XFstDamage();
        return m_bytes.subspan(m_filled, size);
    }

    std::span<std::uint8_t> m_bytes;
    std::size_t m_filled = 0;
};

void Unpack(CFstBytes packed, COutput &output)
{
    std::uint8_t control = packed.Byte();
    const int level = control / 32 + 1;
    if (level > 2)
        throw XFstDamage();
    control %= 32;  // the first run is one of literals
    for (;;) {
        if (control < 32)
            output.Append(packed.Take(std::uint64_t{control} + 1));
        else
            output.Repeat(TakeMatch(packed, control, level));
        if (packed.AtEnd())
            return;
        control = packed.Byte();
    }
}

}  // namespace

bool UnpackFastLz(SFstSpan packed, std::span<std::uint8_t> unpacked)
try {
    COutput output(unpacked);
    Unpack(CFstBytes(packed), output);
    return output.IsFull();
} catch (const XFstDamage &) {
    return false;
}

}  // namespace NTARN
