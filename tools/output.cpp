#include "tools/output.h"

#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "tools/commandline.h"
#include "tools/quote.h"

namespace {

namespace fs = std::filesystem;

[[noreturn]] void RefuseFile(const std::string &path, int error)
{
    throw CRefusal(OneLine(path) + ": cannot be written: " + std::strerror(error != 0 ? error : EIO));
}

// What a signal handler may touch is the draft's name, in place before the handler is.
constexpr std::array EndingSignals = {SIGHUP, SIGINT, SIGTERM};
std::array<char, PATH_MAX> g_draftPath;
std::array<struct sigaction, EndingSignals.size()> g_formerActions;

extern "C" void RemoveDraftAndEnd(int signal)
{
    unlink(g_draftPath.data());
    raise(signal);  // the handler is gone by now: ends the tool as if there had been none
}

// A signal that is ignored, as under nohup, stays so.
void CatchSignals(const std::string &draft)
{
    g_draftPath.fill('\0');
    if (draft.size() < g_draftPath.size())
        draft.copy(g_draftPath.data(), draft.size());
    for (std::size_t i = 0; i < EndingSignals.size(); ++i) {
        struct sigaction action {};
        action.sa_handler = RemoveDraftAndEnd;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        sigaction(EndingSignals[i], nullptr, &g_formerActions[i]);
        if (g_formerActions[i].sa_handler != SIG_IGN)
            sigaction(EndingSignals[i], &action, nullptr);
    }
}

void LetSignalsGo()
{
    for (std::size_t i = 0; i < EndingSignals.size(); ++i)
        sigaction(EndingSignals[i], &g_formerActions[i], nullptr);
}

// Where a file lies that a symbolic link names. It need not be there yet.
fs::path FollowLinks(fs::path path)
{
    constexpr int MostLinks = 40;  // as in the kernel
    const std::string name = path;
    std::error_code error;
    for (int links = 0; fs::is_symlink(path, error); ++links) {
        if (links == MostLinks)
            RefuseFile(name, ELOOP);
        const fs::path target = fs::read_symlink(path, error);
        if (error)
            RefuseFile(name, error.value());
        path = path.parent_path() / target;
    }
    return path;
}

void WriteStream(std::ostream &stream, const std::string &name, const std::function<void(std::ostream &)> &write)
{
    errno = 0;
    write(stream);
    stream.flush();
    if (!stream)
        RefuseFile(name, errno);
}

std::ofstream OpenForWriting(const std::string &path, const std::string &place)
{
    errno = 0;
    std::ofstream file(path, std::ios::binary);
    if (!file)
        RefuseFile(place, errno);
    return file;
}

}  // namespace

CDraft::CDraft(const std::string &path)
    : m_place(FollowLinks(path)), m_path(m_place + ".part" + std::to_string(getpid()))
{
    CatchSignals(m_path);
}

CDraft::~CDraft()
{
    std::error_code ignored;
    fs::remove(m_path, ignored);
    LetSignalsGo();
}

void CDraft::TakeMode() const
{
    std::error_code error;
    const fs::file_status replaced = fs::status(m_place, error);
    if (fs::is_regular_file(replaced))
        fs::permissions(m_path, replaced.permissions(), error);
}

void WriteOutput(const std::string &path, const std::function<void(std::ostream &)> &write)
{
    if (path.empty()) {
        WriteStream(std::cout, "standard output", write);
        return;
    }
    std::error_code ignored;
    if (fs::exists(path, ignored) && !fs::is_regular_file(path, ignored)) {
        std::ofstream file = OpenForWriting(path, path);  // a device or a pipe cannot be replaced
        WriteStream(file, path, write);
        return;
    }
    const CDraft draft(path);
    std::ofstream file = OpenForWriting(draft.Path(), path);
    draft.TakeMode();
    WriteStream(file, path, write);
    std::error_code error;
    fs::rename(draft.Path(), draft.Place(), error);
    if (error)
        RefuseFile(path, error.value());
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
