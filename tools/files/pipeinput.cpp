#include "tools/files/pipeinput.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <exception>
#include <map>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "platform/files/temporaryfile.h"
#include "platform/files/uninterrupted.h"
#include "platform/input/foreignkinds.h"
#include "platform/input/openinput.h"
#include "platform/input/packedinput.h"
#include "tools/commandline.h"
#include "tools/files/matlist.h"
#include "tools/message.h"
#include "tools/progress.h"
#include "tools/quote.h"
#include "waveform/files/filekinds.h"

namespace tesk {

namespace {

constexpr std::uintmax_t MostBytes = std::uintmax_t(16) << 30;
constexpr const char *StandardInput = "/dev/stdin";

[[noreturn]] void RefuseCopy(const std::string &why)
{
    throw CRefusal("what comes through a pipe is no VCD, and is copied to be read; " + why);
}

std::string PathOf(int descriptor)
{
    return "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(descriptor);
}

CFile MakeCopy()
{
    CFile file = MakeTemporaryFile();
    if (!file.IsOpen())
        RefuseCopy(OneLine(TemporaryFolder()) + ": " + std::generic_category().message(errno));
    return file;
}

// A copy of the next bytes of a pipe, which keeps them. @return how many; 0 at its end
std::size_t CopyAhead(int pipe, std::vector<char> &bytes)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return 0;
    const CFile readEnd(ends[0]), writeEnd(ends[1]);
    const ssize_t copied = Uninterrupted([&] { return tee(pipe, writeEnd.Descriptor(), bytes.size(), 0); });
    const ssize_t count = copied > 0 ? readEnd.Read(bytes.data(), bytes.size()) : 0;
    return static_cast<std::size_t>(std::max<ssize_t>(count, 0));
}

// The beginning of what a pipe gives. Who writes it in little pieces is given a moment.
std::string LookAhead(int pipe)
{
    using std::chrono::milliseconds;
    constexpr std::size_t Wanted = 4096, Enough = 64;
    constexpr milliseconds Patience(500), PatienceForMore(50);
    std::vector<char> bytes(Wanted);
    const std::size_t first = CopyAhead(pipe, bytes);  // waits for the first byte
    std::size_t count = first;
    const auto begin = std::chrono::steady_clock::now();
    while (count > 0 && count < Wanted) {
        pollfd state{pipe, 0, 0};
        if (poll(&state, 1, 0) > 0 && (state.revents & POLLHUP) != 0) {
            count = CopyAhead(pipe, bytes);
            break;
        }
        const auto passed = std::chrono::steady_clock::now() - begin;
        if (passed > Patience || (count >= Enough && passed > PatienceForMore))
            break;
        std::this_thread::sleep_for(milliseconds(1));
        count = CopyAhead(pipe, bytes);
    }
    return {bytes.data(), count};
}

// What gzip packed, as far as it can be unpacked; what else there is as it stands.
std::string Unpacked(const std::string &bytes)
{
    const CFile file(memfd_create("beginning", MFD_CLOEXEC));
    if (!file.IsOpen() || !file.Write(bytes.data(), bytes.size()))
        return bytes;
    std::string unpacked(64, '\0');
    try {
        CPackedInput input(PathOf(file.Descriptor()));
        unpacked.resize(input.Read(unpacked.data(), unpacked.size()));
    } catch (const std::exception &) {  // what is cut off is bound to end early
        unpacked = bytes;
    }
    return unpacked;
}

bool IsReadAsItComes(const std::string &path, const std::string &beginning)
{
    const std::string bytes = Unpacked(beginning);
    if (const auto kind = KindOfContents(bytes))
        return *kind == EFileKind::Vcd;
    if (BeginsAsMatFile(bytes))
        return false;
    if (const SForeignKind *const foreign = FindForeignKind(bytes, path))
        throw CRefusal(OneLine(path) + ": " + ForeignKindText(*foreign));
    return true;
}

// A pipe that was opened, and stays so: without a reader it would lose what it holds.
struct SPipe {
    CFile file;
    std::unique_ptr<CPipeCopy> copy;  // null if it is read as it comes
};

std::string OpenPipe(const std::string &path, bool isSocket)
{
    static std::map<std::string, SPipe> s_pipes;
    const auto known = s_pipes.find(path);
    if (known != s_pipes.end())
        return known->second.copy != nullptr ? known->second.copy->Path() : path;
    SPipe pipe;
    pipe.file = isSocket ? CFile(dup(STDIN_FILENO)) : OpenInput(path);
    if (!pipe.file.IsOpen())
        return path;  // who opens it says why it cannot be read
    if (isSocket || !IsReadAsItComes(path, LookAhead(pipe.file.Descriptor()))) {
        pipe.copy = std::make_unique<CPipeCopy>(pipe.file, MostBytes);
        ShowPathAs(pipe.copy->Path(), path == StandardInput ? "standard input" : path);
    }
    const SPipe &kept = s_pipes[path] = std::move(pipe);
    return kept.copy != nullptr ? kept.copy->Path() : path;
}

}  // namespace

CPipeCopy::CPipeCopy(const CFile &pipe, std::uintmax_t most) : m_file(MakeCopy()), m_path(PathOf(m_file.Descriptor()))
{
    Fill(pipe, most);
}

void CPipeCopy::Fill(const CFile &pipe, std::uintmax_t most)
{
    CProgressLine progress("Copying");
    std::vector<char> bytes(std::size_t(1) << 16);
    std::uintmax_t copied = 0;
    while (true) {
        const ssize_t count = pipe.Read(bytes.data(), bytes.size());
        if (count < 0)
            RefuseCopy("it cannot be read: " + std::generic_category().message(errno));
        if (count == 0)
            return;
        copied += static_cast<std::uintmax_t>(count);
        if (copied > most)
            RefuseCopy("it is longer than " + std::to_string(most) + " bytes; write it to a file");
        if (!m_file.Write(bytes.data(), static_cast<std::size_t>(count)))
            RefuseCopy("there is no room for that: " + std::generic_category().message(errno) +
                       "; TMPDIR names another folder");
        progress.ShowBytes(static_cast<long long>(copied));
    }
}

std::string ReadablePath(const std::string &path)
{
    std::string opened = path == "-" ? StandardInput : path;
    struct stat status {};
    if (stat(opened.c_str(), &status) != 0)
        return opened;
    const bool isSocket = S_ISSOCK(status.st_mode) && opened == StandardInput;
    return S_ISFIFO(status.st_mode) || isSocket ? OpenPipe(opened, isSocket) : opened;
}

}  // namespace tesk
