#include "tools/output.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
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

void WriteColumns(std::ostream &out, const std::vector<std::vector<std::string>> &lines, std::size_t numbers)
{
    std::vector<std::size_t> widths;
    for (const auto &line : lines) {
        widths.resize(std::max(widths.size(), line.size()));
        for (std::size_t i = 0; i < line.size(); ++i)
            widths[i] = std::max(widths[i], line[i].size());
    }
    for (const auto &line : lines) {
        for (std::size_t i = 0; i < line.size(); ++i) {
            const std::string padding(widths[i] - line[i].size(), ' ');
            out << (i > 0 ? "  " : "") << (i == numbers ? padding : "") << line[i];
            if (i != numbers && i + 1 < line.size())
                out << padding;
        }
        out << '\n';
    }
}

bool IsErrorTerminal()
{
    return isatty(STDERR_FILENO) != 0;
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
