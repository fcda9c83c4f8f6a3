#include "platform/fst/fstunpack.h"

#include <cstdint>
#include <lz4.h>
#include <span>
#include <zlib.h>

#include <algorithm>
#include <limits>

namespace NTARN {
namespace {

// The most unpacked bytes that one packed byte stands for. No form reaches it: the bytes that begin a run, and those
// around the whole, stand for fewer.
constexpr std::uint64_t ZlibReach = 1032;
constexpr std::uint64_t LzReach = 255;

std::uint64_t Reach(EFstPacker packer)
{
    return packer == EFstPacker::Zlib || packer == EFstPacker::Gzip ? ZlibReach : LzReach;
}

// zlib counts in 32 bits.
uInt NextPart(std::size_t left)
{
    return static_cast<uInt>(std::min<std::size_t>(left, 1U << 30));
}

bool InflateAll(z_stream &stream, SFstSpan packed, std::span<std::uint8_t> unpacked)
{
    std::size_t read = 0;
    std::size_t written = 0;
    for (;;) {
        stream.next_in = const_cast<Bytef *>(packed.data() + read);
        stream.avail_in = NextPart(packed.size() - read);
        stream.next_out = unpacked.data() + written;
        stream.avail_out = NextPart(unpacked.size() - written);
        const int result = inflate(&stream, Z_NO_FLUSH);
        read = static_cast<std::size_t>(stream.next_in - packed.data());
        written = static_cast<std::size_t>(stream.next_out - unpacked.data());
        if (result != Z_OK)
            return result == Z_STREAM_END && written == unpacked.size();
    }
}

bool Inflate(SFstSpan packed, std::span<std::uint8_t> unpacked, int windowBits)
{
    z_stream stream = {};
    if (inflateInit2(&stream, windowBits) != Z_OK)
        return false;
    const bool isWhole = InflateAll(stream, packed, unpacked);
    inflateEnd(&stream);
    return isWhole;
}

bool UnpackLz4(SFstSpan packed, std::span<std::uint8_t> unpacked)
{
    constexpr auto Most = static_cast<std::size_t>(std::numeric_limits<int>::max());
    if (packed.size() > Most || unpacked.size() > Most)
        return false;
    const int size =
        LZ4_decompress_safe(reinterpret_cast<const char *>(packed.data()), reinterpret_cast<char *>(unpacked.data()),
                            static_cast<int>(packed.size()), static_cast<int>(unpacked.size()));
    return size >= 0 && static_cast<std::size_t>(size) == unpacked.size();
}

}  // namespace

CFstBuffer FstUnpack(EFstPacker packer, SFstSpan packed, std::uint64_t size)
{
    if (size > packed.size() * Reach(packer))
        throw XFstDamage();
    // One byte more than asked for, so that there is always an address to unpack to.
    CFstBuffer buffer(static_cast<std::size_t>(size) + 1);
    const std::span<std::uint8_t> unpacked(buffer.data(), buffer.size() - 1);
    bool isWhole = false;
    switch (packer) {
    case EFstPacker::Zlib: isWhole = Inflate(packed, unpacked, MAX_WBITS); break;
    case EFstPacker::Gzip: isWhole = Inflate(packed, unpacked, MAX_WBITS + 16); break;
    case EFstPacker::Lz4: isWhole = UnpackLz4(packed, unpacked); break;
    case EFstPacker::FastLz: isWhole = UnpackFastLz(packed, unpacked); break;
    }
    if (!isWhole)
        throw XFstDamage();
    buffer.pop_back();
    return buffer;
}

CFstBuffer FstInflateIfPacked(SFstSpan bytes, std::uint64_t size)
{
    return size == bytes.size() ? CFstBuffer(bytes.begin(), bytes.end()) : FstUnpack(EFstPacker::Zlib, bytes, size);
}

}  // namespace NTARN
