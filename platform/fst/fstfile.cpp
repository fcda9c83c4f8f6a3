#include "platform/fst/fstfile.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <utility>
#include <zlib.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <span>

#include "platform/files/temporaryfile.h"
#include "platform/fst/fstlimits.h"
#include "platform/tarn.h"

namespace NTARN {
namespace {

constexpr std::uint8_t WrapperType = 254;
constexpr std::size_t WrapperHeadSize = 1 + 8 + 8;  // type, length, unpacked size
constexpr std::size_t PartSize = 1 << 16;

// Unpacks gzip from one file into another, in parts.
class CUnwrapper {
public:
    /// @param size  more than this is not unpacked
    CUnwrapper(const tesk::CFile &from, const tesk::CFile &to, std::uint64_t size)
        : m_from(from), m_to(to), m_left(size)
    {
        if (inflateInit2(&m_stream, MAX_WBITS + 16) != Z_OK)
            throw std::bad_alloc();
    }
    CUnwrapper(const CUnwrapper &) = delete;
    ~CUnwrapper() { inflateEnd(&m_stream); }

    /// A file that ends too early is unpacked as far as it goes.
    void Run()
    {
        int result = Z_OK;
        while (result == Z_OK || result == Z_BUF_ERROR) {
            m_stream.next_in = m_packed;
            const ssize_t count = m_from.ReadFully(m_packed, PartSize);
            if (count < 0)
                throw tesk::XByteFault{{}, errno};
            if (count == 0)
                return;
            m_stream.avail_in = static_cast<uInt>(count);
            result = Inflate();
        }
        if (result != Z_STREAM_END)
            throw XFileCorrupted();
    }

private:
    int Inflate()
    {
        int result = Z_OK;
        do {
            m_stream.next_out = m_unpacked;
            m_stream.avail_out = PartSize;
            result = inflate(&m_stream, Z_NO_FLUSH);
            const std::size_t size = PartSize - m_stream.avail_out;
            if (size > m_left)
                throw XFileCorrupted();
            m_left -= size;
            if (!m_to.Write(m_unpacked, size))
                throw XFstNoRoom{errno};
        } while (result == Z_OK && m_stream.avail_out == 0);
        return result;
    }

    const tesk::CFile &m_from;
    const tesk::CFile &m_to;
    std::uint64_t m_left;
    z_stream m_stream = {};
    std::uint8_t m_packed[PartSize];
    std::uint8_t m_unpacked[PartSize];
};

}  // namespace

CFstFile::CFstFile(const std::string &path)
    : m_file(OpenRegularFile(path)), m_size(SizeOfFile(m_file)), m_packedSize(m_size)
{}

CFstBuffer CFstFile::Read(std::uint64_t position, std::uint64_t size)
{
    if (position > m_size || size > m_size - position)
        throw XFstDamage();
    CFstBuffer bytes(static_cast<std::size_t>(size));
    const ssize_t count = m_file.ReadAt(position, bytes.data(), bytes.size());
    if (count < 0) {
        m_error = errno;
        throw tesk::XByteFault{{}, m_error};
    }
    if (static_cast<std::size_t>(count) != bytes.size())
        throw XFstDamage();
    return bytes;
}

void CFstFile::Unwrap()
{
    if (m_size == 0 || Read(0, 1)[0] != WrapperType)
        return;
    if (m_size < WrapperHeadSize)
        throw XFileCorrupted();
    const CFstBuffer head = Read(0, WrapperHeadSize);
    const std::uint64_t size = CFstBytes(SFstSpan(head).last(8)).Big<std::uint64_t>();
    if (size > SFstLimits(m_size).Wrapped())
        throw XFstTooMuch{{}, "packed bytes"};
    if (m_file.Seek(WrapperHeadSize, SEEK_SET) < 0)
        throw XFileUnreadable(errno);
    tesk::CFile unpacked = tesk::MakeTemporaryFile();
    if (!unpacked.IsOpen())
        throw XFstNoRoom{errno};
    std::make_unique<CUnwrapper>(m_file, unpacked, size)->Run();
    m_size = SizeOfFile(unpacked);
    m_file = std::move(unpacked);
}

CFstBuffer ReadFstSidecar(const std::string &path)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return {};
    CFstFile file(path);
    return file.Read(0, file.Size());
}

}  // namespace NTARN
