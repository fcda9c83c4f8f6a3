// The packers of the FST format.
#pragma once

#include <cstdint>
#include <span>

#include "platform/fst/fstbytes.h"

namespace NTARN {

enum class EFstPacker { Zlib, Gzip, Lz4, FastLz };

/// Unpacks what has `size` bytes unpacked.
/// @throw XFstDamage if `packed` does not unpack to exactly that, or if that is more than the packer can pack so small:
///        a file must not claim memory that it does not fill
CFstBuffer FstUnpack(EFstPacker packer, SFstSpan packed, std::uint64_t size);

/// As `FstUnpack` with zlib; what is as long as it is unpacked was not packed.
CFstBuffer FstInflateIfPacked(SFstSpan bytes, std::uint64_t size);

/// Unpacks FastLZ of level 1 or 2, as many bytes as `unpacked` has.
/// @return false if `packed` does not unpack to exactly that
bool UnpackFastLz(SFstSpan packed, std::span<std::uint8_t> unpacked);

}  // namespace NTARN
