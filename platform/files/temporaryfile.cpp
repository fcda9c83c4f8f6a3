#include "platform/files/temporaryfile.h"

#include <fcntl.h>
#include <sys/random.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "platform/files/filecalls.h"

namespace tesk {

std::string TemporaryFolder()
{
    std::error_code ignored;
    const std::string folder = std::filesystem::temp_directory_path(ignored).string();
    return !folder.empty() ? folder : "/tmp";
}

CFile MakeTemporaryFile()
{
    constexpr mode_t Rights = 0600;
    const std::string folder = TemporaryFolder();
    CFile file = CFile::Open(folder, O_TMPFILE | O_RDWR, Rights);
    if (file.IsOpen())
        return file;
    // Not every file system has such files.
    const std::string path = folder + "/tesk-" + RandomDigits();
    file = CFile::Open(path, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, Rights);
    if (file.IsOpen() && FileCalls().Remove(AT_FDCWD, path.c_str()) != 0) {
        const int error = errno;
        file.Close();
        errno = error;
    }
    return file;
}

std::string RandomDigits()
{
    std::uint64_t number = 0;
    if (getrandom(&number, sizeof number, 0) != sizeof number)
        return {};
    std::array<char, 17> digits{};
    std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(number));
    return digits.data();
}

}  // namespace tesk
