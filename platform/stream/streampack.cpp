#include "platform/stream/streampack.h"

#include <lz4.h>
#include <zlib.h>

#include <limits>
#include <new>

namespace Morvel {

namespace {

// What one packed byte can stand for at most, and a little for short blocks.
constexpr std::size_t MostExpansion = 255;
constexpr std::size_t Slack = 64;

}  // namespace

std::uint32_t Crc(std::string_view bytes)
{
    return static_cast<std::uint32_t>(crc32_z(0, reinterpret_cast<const Bytef *>(bytes.data()), bytes.size()));
}

std::string PackFast(std::string_view bytes)
{
    const int size = static_cast<int>(bytes.size());
    std::string packed(static_cast<std::size_t>(LZ4_compressBound(size)), '\0');
    const int used = LZ4_compress_default(bytes.data(), packed.data(), size, static_cast<int>(packed.size()));
    if (used <= 0)
        throw std::bad_alloc();  // all that can fail
    packed.resize(static_cast<std::size_t>(used));
    return packed;
}

bool UnpackFast(std::string_view packed, std::size_t size, std::string &bytes)
{
    constexpr std::size_t Most = std::numeric_limits<int>::max();
    if (packed.size() > Most || size > Most || size > packed.size() * MostExpansion + Slack)
        return false;
    bytes.resize(size);
    const int used =
        LZ4_decompress_safe(packed.data(), bytes.data(), static_cast<int>(packed.size()), static_cast<int>(size));
    return used >= 0 && static_cast<std::size_t>(used) == size;
}

}  // namespace Morvel
