#include "platform/stream/filebytes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>
#include <vector>

#include "platform/input/openinput.h"
#include "platform/input/packedinput.h"

namespace Morvel {

namespace {

struct stat StatusOf(int file)
{
    struct stat status {};
    if (::fstat(file, &status) != 0)
        throw XFault("cannot be read: " + std::generic_category().message(errno));
    return status;
}

void TestIsRegular(const std::filesystem::path &path)
{
    std::error_code error;
    const auto type = std::filesystem::status(path, error).type();
    if (type == std::filesystem::file_type::directory)
        throw XFault("is a directory");
    if (!error && type != std::filesystem::file_type::regular)
        error = std::make_error_code(std::errc::not_supported);
    if (error)
        throw XFault("cannot be read: " + error.message());
}

void WriteAll(int file, const char *bytes, std::size_t size)
{
    while (size > 0) {
        const ssize_t written = ::write(file, bytes, size);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            throw XFault("cannot be unpacked into a temporary file: " + std::generic_category().message(errno));
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
}

}  // namespace

std::shared_ptr<CFileBytes> CFileBytes::Open(const std::filesystem::path &path)
{
    TestIsRegular(path);
    const int file = tesk::OpenInput(path.c_str());
    if (file < 0)
        throw XFault("cannot be opened");
    return std::make_shared<CFileBytes>(file);
}

std::shared_ptr<CFileBytes> CFileBytes::Unpack(const std::filesystem::path &path)
try {
    constexpr std::size_t PieceSize = std::size_t{1} << 16;
    tesk::CPackedInput input(path.string());
    const tesk::InputStream temporary(std::tmpfile());
    if (temporary == nullptr)
        throw XFault("cannot be unpacked into a temporary file: " + std::generic_category().message(errno));
    std::vector<char> piece(PieceSize);
    while (const std::size_t size = input.Read(piece.data(), piece.size()))
        WriteAll(::fileno(temporary.get()), piece.data(), size);
    const int file = ::fcntl(::fileno(temporary.get()), F_DUPFD_CLOEXEC, 0);
    if (file < 0)
        throw XFault("cannot be read: " + std::generic_category().message(errno));
    return std::make_shared<CFileBytes>(file);
} catch (const tesk::XInputFault &fault) {
    throw XFault(std::string("cannot be read: ") + fault.what());
}

CFileBytes::~CFileBytes()
{
    ::close(m_file);
}

std::uint64_t CFileBytes::Size() const
{
    return static_cast<std::uint64_t>(StatusOf(m_file).st_size);
}

CFileStamp CFileBytes::Stamp() const
{
    const struct stat status = StatusOf(m_file);
    return {static_cast<std::int64_t>(status.st_dev),
            static_cast<std::int64_t>(status.st_ino),
            static_cast<std::int64_t>(status.st_size),
            status.st_mtim.tv_sec,
            status.st_mtim.tv_nsec,
            status.st_ctim.tv_sec,
            status.st_ctim.tv_nsec};
}

bool CFileBytes::IsPacked() const
{
    constexpr const char *Magic = "\x1F\x8B";
    return Size() >= 2 && Read(0, 2) == Magic;
}

std::string CFileBytes::Read(std::uint64_t offset, std::uint64_t size) const
{
    std::string bytes(static_cast<std::size_t>(size), '\0');
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t count =
            ::pread(m_file, bytes.data() + done, bytes.size() - done, static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            throw XFault("cannot be read to its end");
        done += static_cast<std::size_t>(count);
    }
    return bytes;
}

}  // namespace Morvel
