#include "platform/fstwriter/fstpack.h"

#include <lz4.h>
#include <new>

#include <algorithm>
#include <array>

namespace NTARN {
namespace {

constexpr int ZlibLevel = 4;
constexpr std::size_t PartSize = 1 << 14;

}  // namespace

CFstBuffer FstDeflateIfShorter(SFstSpan bytes)
{
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    CFstBuffer packed(size);
    const int result = compress2(packed.data(), &size, bytes.data(), static_cast<uLong>(bytes.size()), ZlibLevel);
    if (result != Z_OK || size >= bytes.size())
        return {bytes.begin(), bytes.end()};
    packed.resize(size);
    return packed;
}

bool FstPackLz4(SFstSpan bytes, CFstBuffer &packed)
{
    if (bytes.size() > LZ4_MAX_INPUT_SIZE)
        return false;
    packed.resize(bytes.size());
    const int size =
        LZ4_compress_default(reinterpret_cast<const char *>(bytes.data()), reinterpret_cast<char *>(packed.data()),
                             static_cast<int>(bytes.size()), static_cast<int>(packed.size()));
    packed.resize(static_cast<std::size_t>(std::max(size, 0)));
    return size > 0 && packed.size() < bytes.size();
}

CFstGzip::CFstGzip()
{
    constexpr int Memory = 8;
    if (deflateInit2(&m_stream, ZlibLevel, Z_DEFLATED, MAX_WBITS + 16, Memory, Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::bad_alloc();
}

CFstGzip::~CFstGzip()
{
    deflateEnd(&m_stream);
}

const CFstBuffer &CFstGzip::Finish()
{
    Run({}, Z_FINISH);
    return m_packed;
}

void CFstGzip::Run(SFstSpan bytes, int flush)
{
    std::array<std::uint8_t, PartSize> part;
    m_size += bytes.size();
    m_stream.next_in = const_cast<Bytef *>(bytes.data());
    m_stream.avail_in = static_cast<uInt>(bytes.size());  // a name and a little
    do {
        m_stream.next_out = part.data();
        m_stream.avail_out = PartSize;
        deflate(&m_stream, flush);
        m_packed.insert(m_packed.end(), part.begin(), part.end() - m_stream.avail_out);
    } while (m_stream.avail_out == 0);
}

}  // namespace NTARN
