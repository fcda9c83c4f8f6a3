// The bytes of an FST file.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/files/bytereader.h"

namespace NTARN {

using CFstBuffer = std::vector<std::uint8_t>;
using SFstSpan = std::span<const std::uint8_t>;

/// Raised where bytes do not say what the format asks for. It stays inside the reader.
using XFstDamage = tesk::XByteDamage;

/// Takes values off the front of a run of bytes.
using CFstBytes = tesk::CByteReader;

}  // namespace NTARN
