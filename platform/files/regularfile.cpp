#include "platform/files/regularfile.h"

#include <sys/types.h>

#include <filesystem>
#include <system_error>

#include "platform/tarn.h"

namespace NTARN {

FilePtr OpenRegularFile(const std::string &path)
{
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found)
        throw XFileDoesNotExist();
    if (!std::filesystem::is_regular_file(status))
        throw XFileCorrupted();
    FilePtr file(std::fopen(path.c_str(), "rb"));
    if (!file)
        throw XFileCorrupted();
    return file;
}

std::uint64_t SizeOfFile(std::FILE *file)
{
    if (fseeko(file, 0, SEEK_END) != 0)
        throw XFileCorrupted();
    const off_t size = ftello(file);
    if (size < 0)
        throw XFileCorrupted();
    return static_cast<std::uint64_t>(size);
}

bool SeekFile(std::FILE *file, std::uint64_t position)
{
    return fseeko(file, static_cast<off_t>(position), SEEK_SET) == 0;
}

}  // namespace NTARN
