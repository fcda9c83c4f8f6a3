// Writing the values that an FST file is made of behind one another.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/fst/fstbytes.h"

namespace NTARN {

/// 8 bytes, the highest first.
inline void PutNumber(CFstBuffer &bytes, std::uint64_t number)
{
    for (int shift = 56; shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(number >> shift));
}

/// Groups of 7 bits, the lowest first.
inline void PutVarint(CFstBuffer &bytes, std::uint64_t number)
{
    for (; number > 0x7F; number >>= 7)
        bytes.push_back(static_cast<std::uint8_t>(number | 0x80));
    bytes.push_back(static_cast<std::uint8_t>(number));
}

/// The same in two's complement.
inline void PutSignedVarint(CFstBuffer &bytes, std::int64_t number)
{
    for (; number < -64 || number > 63; number >>= 7)
        bytes.push_back(static_cast<std::uint8_t>((number & 0x7F) | 0x80));
    bytes.push_back(static_cast<std::uint8_t>(number & 0x7F));
}

inline void PutBytes(CFstBuffer &bytes, SFstSpan more)
{
    bytes.insert(bytes.end(), more.begin(), more.end());
}

/// The letters up to the first NUL, and a NUL.
inline void PutText(CFstBuffer &bytes, std::string_view text)
{
    text = text.substr(0, text.find('\0'));
    bytes.insert(bytes.end(), text.begin(), text.end());
    bytes.push_back(0);
}

}  // namespace NTARN
