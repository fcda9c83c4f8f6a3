#include "platform/stream/filebytes.h"

#include <sys/stat.h>

#include <cerrno>
#include <system_error>
#include <vector>

#include "platform/files/temporaryfile.h"
#include "platform/input/openinput.h"
#include "platform/input/packedinput.h"

namespace Morvel {

namespace {

[[noreturn]] void FailToRead()
{
    throw XFault("cannot be read: " + std::generic_category().message(errno));
}

[[noreturn]] void FailToUnpack()
{
    throw XFault("cannot be unpacked into a temporary file: " + std::generic_category().message(errno));
}

struct stat StatusOf(const tesk::CFile &file)
{
    struct stat status {};
    if (!file.Status(status))
        FailToRead();
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

}  // namespace

std::shared_ptr<CFileBytes> CFileBytes::Open(const std::filesystem::path &path)
{
    TestIsRegular(path);
    tesk::CFile file = tesk::OpenInput(path.string());
    if (!file.IsOpen())
        throw XFault("cannot be opened: " + tesk::InputErrorText(errno));
    return std::make_shared<CFileBytes>(std::move(file));
}

std::shared_ptr<CFileBytes> CFileBytes::Unpack(const std::filesystem::path &path)
try {
    constexpr std::size_t PieceSize = std::size_t{1} << 16;
    tesk::CPackedInput input(path.string());
    tesk::CFile unpacked = tesk::MakeTemporaryFile();
    if (!unpacked.IsOpen())
        FailToUnpack();
    std::vector<char> piece(PieceSize);
    while (const std::size_t size = input.Read(piece.data(), piece.size())) {
        if (!unpacked.Write(piece.data(), size))
            FailToUnpack();
    }
    return std::make_shared<CFileBytes>(std::move(unpacked));
} catch (const tesk::XInputFault &fault) {
    throw XFault(std::string("cannot be read: ") + fault.what());
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
    const ssize_t count = m_file.ReadAt(offset, bytes.data(), bytes.size());
    if (count < 0)
        FailToRead();
    if (static_cast<std::size_t>(count) != bytes.size())
        throw XFault("cannot be read to its end");
    return bytes;
}

}  // namespace Morvel
