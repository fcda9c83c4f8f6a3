// Reading the bytes of an FST file in order, never behind their end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "platform/files/leb128.h"

namespace NTARN {

using CFstBuffer = std::vector<std::uint8_t>;
using SFstSpan = std::span<const std::uint8_t>;

/// Raised where bytes do not say what the format asks for. It stays inside the reader.
struct XFstDamage {};

/// Takes values off the front of a run of bytes. Each operation raises XFstDamage if its value does not end inside.
class CFstBytes {
public:
    explicit CFstBytes(SFstSpan bytes) : m_rest(bytes) {}

    bool AtEnd() const { return m_rest.empty(); }
    SFstSpan Rest() const { return m_rest; }

    /// The next `count` bytes.
    SFstSpan Take(std::uint64_t count)
    {
        if (count > m_rest.size())
            throw XFstDamage();
        const SFstSpan taken = m_rest.first(static_cast<std::size_t>(count));
        m_rest = m_rest.subspan(taken.size());
        return taken;
    }

    std::uint8_t Byte() { return Take(1)[0]; }

    /// 8 bytes, the highest first.
    std::uint64_t Number()
    {
        std::uint64_t number = 0;
        for (const std::uint8_t byte : Take(8))
            number = number << 8 | byte;
        return number;
    }

    /// Groups of 7 bits, the lowest first; bit 7 is set in all bytes but the last. At most 64 bits.
    std::uint64_t Varint()
    {
        // Nearly all are short.
        if (!m_rest.empty() && m_rest[0] < 0x80)
            return Byte();
        return Groups().number;
    }

    /// As `Varint`, in two's complement: the highest bit written is the sign.
    std::int64_t SignedVarint() { return Groups().Signed(); }

    /// Text up to the NUL that ends it.
    std::string_view Text()
    {
        std::size_t length = 0;
        while (length < m_rest.size() && m_rest[length] != 0)
            ++length;
        const SFstSpan text = Take(std::uint64_t{length} + 1);
        return {reinterpret_cast<const char *>(text.data()), length};
    }

private:
    SLeb128 Groups()
    {
        SLeb128 taken;
        if (!TakeLeb128([this] { return Byte(); }, taken))
            throw XFstDamage();
        return taken;
    }

    SFstSpan m_rest;
};

}  // namespace NTARN
