// How the blocks of event streams are packed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Morvel {

/// CRC-32 as in zlib, gzip and PNG.
std::uint32_t Crc(std::string_view bytes);

/// Packs bytes as one LZ4 block.
/// @param bytes  up to 2 GB
std::string PackFast(std::string_view bytes);

/// Unpacks what `PackFast` made of exactly `size` bytes, without trusting it. @return false if it is anything else
bool UnpackFast(std::string_view packed, std::size_t size, std::string &bytes);

}  // namespace Morvel
