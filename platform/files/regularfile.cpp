#include "platform/files/regularfile.h"

#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "platform/log.h"

namespace NTARN {

XFileUnreadable::XFileUnreadable(int error) : m_text("cannot be read: " + std::generic_category().message(error)) {}

std::string XFileUnreadable::TextFor(const std::string &path) const
{
    return "Waveform file `" + path + "' " + m_text + ".";
}

void TellUnreadable(const std::string &path, int error)
{
    Q71log_PrintFormattedString(1, "KERNEL", "", XFileUnreadable(error).TextFor(path).c_str());
}

tesk::CFile OpenRegularFile(const std::string &path)
{
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found)
        throw XFileDoesNotExist();
    if (!std::filesystem::is_regular_file(status))
        throw XFileCorrupted();
    tesk::CFile file = tesk::CFile::Open(path);
    if (!file.IsOpen())
        throw XFileUnreadable(errno);
    return file;
}

std::uint64_t SizeOfFile(const tesk::CFile &file)
{
    struct stat status {};
    if (!file.Status(status))
        throw XFileUnreadable(errno);
    return static_cast<std::uint64_t>(status.st_size);
}

}  // namespace NTARN
