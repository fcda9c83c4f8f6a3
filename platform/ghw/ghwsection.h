// The sections of a GHW file: their tags, and what every one begins and ends with.
#pragma once

#include <cstdint>

#include "platform/ghw/ghwbytes.h"

namespace NTARN {

/// A tag as the number of its four bytes, the first one highest.
constexpr std::uint32_t GhwTag(const char (&text)[4])
{
    std::uint32_t tag = 0;
    for (const char c : text)
        tag = tag << 8 | static_cast<std::uint8_t>(c);
    return tag;
}

/// The next four bytes, whatever the byte order of the file.
inline std::uint32_t TakeGhwTag(CGhwBytes &bytes)
{
    std::uint32_t tag = 0;
    for (int i = 0; i < 4; ++i)
        tag = tag << 8 | bytes.Byte();
    return tag;
}

/// Takes the tag that a section ends with. @throw XGhwDamage if another one stands there
inline void ExpectGhwTag(CGhwBytes &bytes, std::uint32_t tag)
{
    if (TakeGhwTag(bytes) != tag)
        throw XGhwDamage();
}

/// Takes four bytes that are always 0.
inline void ExpectGhwZeros(CGhwBytes &bytes)
{
    if (bytes.Word() != 0)
        throw XGhwDamage();
}

/// What a file may make the reader build: as much for every file, and something for each of its bytes. Damaged files
/// can ask for more with a few bytes than any memory holds.
class CGhwBudget {
public:
    explicit CGhwBudget(std::uint64_t fileSize) : m_left(Base + PerByte * fileSize) {}

    /// @throw XGhwDamage once it is used up
    void Charge(std::uint64_t count)
    {
        if (count > m_left)
            throw XGhwDamage();
        m_left -= count;
    }

private:
    static constexpr std::uint64_t Base = 1 << 20;
    static constexpr std::uint64_t PerByte = 8;

    std::uint64_t m_left;
};

}  // namespace NTARN
