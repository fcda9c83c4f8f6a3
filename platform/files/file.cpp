#include "platform/files/file.h"

#include <algorithm>
#include <cerrno>

#include "platform/files/filecalls.h"
#include "platform/files/uninterrupted.h"

namespace tesk {

namespace {

// Reads pieces until there is no more room, or no more to read.
// @param read  reads behind so many bytes
template <class TRead>
ssize_t ReadPieces(std::size_t size, TRead read)
{
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = Uninterrupted([&] { return read(done); });
        if (count < 0)
            return -1;
        if (count == 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    return static_cast<ssize_t>(done);
}

}  // namespace

CFile &CFile::operator=(CFile &&other) noexcept
{
    if (this != &other) {
        Close();
        m_descriptor = other.Release();
    }
    return *this;
}

CFile CFile::Open(const std::string &path, int flags, mode_t rights, int folder)
{
    return CFile(Uninterrupted([&] { return FileCalls().Open(folder, path.c_str(), flags | O_CLOEXEC, rights); }));
}

int CFile::Release()
{
    const int descriptor = m_descriptor;
    m_descriptor = -1;
    return descriptor;
}

// The descriptor is gone even where the call was interrupted: to close it again might close another file.
int CFile::Close()
{
    if (!IsOpen())
        return 0;
    const int before = errno;
    const int error = FileCalls().Close(Release()) == 0 || errno == EINTR ? 0 : errno;
    errno = before;
    return error;
}

ssize_t CFile::Read(void *to, std::size_t size) const
{
    return Uninterrupted([&] { return FileCalls().Read(m_descriptor, to, size); });
}

ssize_t CFile::ReadFully(void *to, std::size_t size) const
{
    return ReadPieces(size, [&](std::size_t done) {
        return FileCalls().Read(m_descriptor, static_cast<char *>(to) + done, size - done);
    });
}

ssize_t CFile::ReadAt(std::uint64_t position, void *to, std::size_t size) const
{
    return ReadPieces(size, [&](std::size_t done) {
        return FileCalls().ReadAt(m_descriptor, static_cast<char *>(to) + done, size - done,
                                  static_cast<off_t>(position + done));
    });
}

bool CFile::Write(const void *from, std::size_t size) const
{
    const char *bytes = static_cast<const char *>(from);
    while (size > 0) {
        const ssize_t count = Uninterrupted([&] { return FileCalls().Write(m_descriptor, bytes, size); });
        if (count <= 0) {
            errno = count < 0 ? errno : EIO;
            return false;
        }
        bytes += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

off_t CFile::Seek(off_t offset, int origin) const
{
    return FileCalls().Seek(m_descriptor, offset, origin);
}

bool CFile::Status(struct stat &status) const
{
    return FileCalls().Status(m_descriptor, status) == 0;
}

int ReadBeginning(const CFile &file, std::size_t most, std::string &bytes)
{
    constexpr std::size_t PieceSize = std::size_t{1} << 16;
    bytes.clear();
    while (bytes.size() < most) {
        const std::size_t begin = bytes.size();
        bytes.resize(std::min(most, begin + PieceSize));
        const ssize_t count = file.ReadFully(bytes.data() + begin, bytes.size() - begin);
        bytes.resize(begin + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        if (count < 0)
            return errno;
        if (bytes.size() == begin)
            break;
    }
    return 0;
}

int ReadBeginning(const std::string &path, std::size_t most, std::string &bytes)
{
    const CFile file = CFile::Open(path);
    bytes.clear();
    return file.IsOpen() ? ReadBeginning(file, most, bytes) : errno;
}

}  // namespace tesk
