#include "tools/output.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "tools/commandline.h"

namespace {

[[noreturn]] void RefuseFile(const std::string &path)
{
    throw CRefusal(path + ": cannot be written: " + std::strerror(errno != 0 ? errno : EIO));
}

void WriteStream(std::ostream &stream, const std::string &name, const std::function<void(std::ostream &)> &write)
{
    errno = 0;
    write(stream);
    stream.flush();
    if (!stream)
        RefuseFile(name);
}

void WriteFile(const std::string &path, const std::string &place, const std::function<void(std::ostream &)> &write)
{
    errno = 0;
    std::ofstream file(path, std::ios::binary);
    if (!file)
        RefuseFile(place);
    WriteStream(file, place, write);
}

}  // namespace

void WriteOutput(const std::string &path, const std::function<void(std::ostream &)> &write)
{
    namespace fs = std::filesystem;
    if (path.empty()) {
        WriteStream(std::cout, "standard output", write);
        return;
    }
    std::error_code ignored;
    if (fs::exists(path, ignored) && !fs::is_regular_file(path, ignored)) {
        WriteFile(path, path, write);  // a device or a pipe cannot be replaced
        return;
    }
    const std::string draft = path + ".part" + std::to_string(getpid());
    try {
        WriteFile(draft, path, write);
        std::error_code error;
        fs::rename(draft, path, error);
        if (error)
            throw CRefusal(path + ": cannot be written: " + error.message());
    } catch (...) {
        fs::remove(draft, ignored);
        throw;
    }
}

bool IsTerminal()
{
    return isatty(STDOUT_FILENO) != 0;
}

int TerminalWidth()
{
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
    return 80;
}
