#include "tools/output.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <iostream>
#include <utility>

#include "platform/files/draft.h"
#include "platform/files/file.h"
#include "platform/files/filebuffer.h"
#include "tools/commandline.h"
#include "tools/files/readwatch.h"
#include "tools/quote.h"

namespace {

namespace fs = std::filesystem;

[[noreturn]] void RefuseFile(const std::string &path, int error)
{
    throw CRefusal(OneLine(path) + ": cannot be written: " + std::strerror(error != 0 ? error : EIO));
}

// All that end a program, but for those by which its own faults show: of these a debugger should see the place.
constexpr std::array EndingSignals = {SIGHUP,  SIGINT,  SIGQUIT, SIGABRT, SIGALRM, SIGTERM, SIGUSR1,   SIGUSR2,
                                      SIGPIPE, SIGXCPU, SIGPROF, SIGIO,   SIGPWR,  SIGSYS,  SIGSTKFLT, SIGVTALRM};

extern "C" void RemoveDraftsAndEnd(int signal)
{
    tesk::RemoveDrafts();
    raise(signal);  // the handler is gone by now: ends the tool as if there had been none
}

// Handles a signal that nobody handles or ignores yet.
void Replace(int signal, void (*handler)(int), int flags)
{
    struct sigaction former {};
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    sigfillset(&action.sa_mask);
    if (sigaction(signal, nullptr, &former) == 0 && former.sa_handler == SIG_DFL)
        sigaction(signal, &action, nullptr);
}

// Lets `write` fill a file. What it raises for want of a place to write to is told by what is wrong with that.
template <class TFile>
void WriteThrough(const std::string &path, std::ostream &stream, const TFile &file,
                  const std::function<void(std::ostream &)> &write)
{
    try {
        write(stream);
    } catch (const std::exception &) {
        if (file.Error() == 0)
            throw;
        RefuseFile(path, file.Error());
    }
    tesk::CReadWatch::Check();
}

// Writes to what is there, such as a device or a pipe, which cannot be replaced.
void WriteInPlace(const std::string &name, tesk::CFile file, const std::function<void(std::ostream &)> &write)
{
    if (!file.IsOpen())
        RefuseFile(name, errno);
    tesk::CFileBuffer buffer(std::move(file));
    std::ostream stream(&buffer);
    WriteThrough(name, stream, buffer, write);
    stream.flush();
    buffer.Close();
    if (!stream || buffer.Error() != 0)
        RefuseFile(name, buffer.Error());
}

}  // namespace

void RemoveDraftsOnSignals()
{
    for (const int signal : EndingSignals)
        Replace(signal, RemoveDraftsAndEnd, static_cast<int>(SA_RESETHAND));
    Replace(SIGXFSZ, SIG_IGN, 0);
}

void WriteOutput(const std::string &path, const std::function<void(std::ostream &)> &write)
{
    if (path.empty() || path == "-") {
        std::cout.flush();
        WriteInPlace("standard output", tesk::CFile(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0)), write);
        return;
    }
    std::error_code ignored;
    if (fs::exists(path, ignored) && !fs::is_regular_file(path, ignored)) {
        WriteInPlace(path, tesk::CFile::Open(path, O_WRONLY | O_CREAT | O_TRUNC), write);
        return;
    }
    tesk::CDraft draft(path);
    if (!draft.IsOpen())
        RefuseFile(path, draft.Error());
    WriteThrough(path, draft.Stream(), draft, write);
    if (!draft.Publish())
        RefuseFile(path, draft.Error());
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

bool IsUtf8Locale()
{
    for (const char *name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char *set = std::getenv(name);
        if (set == nullptr || *set == '\0')
            continue;
        std::string locale = set;
        std::ranges::transform(locale, locale.begin(),
                               [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        return locale.find("utf-8") != locale.npos || locale.find("utf8") != locale.npos;
    }
    return false;
}

std::string Coloured(const std::string &text, EColour colour)
{
    const char *refused = std::getenv("NO_COLOR");
    if (!IsErrorTerminal() || (refused != nullptr && *refused != '\0'))
        return text;
    const char *code = colour == EColour::Red ? "31" : colour == EColour::Yellow ? "33" : "32";
    return std::string("\x1B[1;") + code + 'm' + text + "\x1B[0m";
}
