#include "platform/input/openinput.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <system_error>

#include "platform/files/uninterrupted.h"

namespace tesk {

namespace {

constexpr std::chrono::milliseconds Patience(500);  // who starts reader and writer together starts one of them first

bool IsPipe(const CFile &file)
{
    struct stat status {};
    return file.Status(status) && S_ISFIFO(status.st_mode);
}

// Whether data, or the end of those that came, can be read from a pipe, now or later.
bool HasWriter(const CFile &pipe)
{
    const auto end = std::chrono::steady_clock::now() + Patience;
    const int ready = Uninterrupted([&] {
        pollfd wanted{pipe.Descriptor(), POLLIN, 0};
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        return ::poll(&wanted, 1, std::max(static_cast<int>(left.count()), 0));
    });
    if (ready != 0)
        return true;
    // Nothing came. To copy a byte out of a pipe takes none away, and finds an end only where there is no writer.
    int copy[2];
    if (::pipe2(copy, O_CLOEXEC) != 0)
        return true;
    const CFile readEnd(copy[0]);
    const CFile writeEnd(copy[1]);
    return ::tee(pipe.Descriptor(), writeEnd.Descriptor(), 1, SPLICE_F_NONBLOCK) != 0;
}

}  // namespace

CFile OpenInput(const std::string &fileName)
{
    CFile file = CFile::Open(fileName, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    if (!file.IsOpen())
        return file;
    if (IsPipe(file) && !HasWriter(file)) {
        file.Close();
        errno = ENXIO;
        return file;
    }
    const int flags = ::fcntl(file.Descriptor(), F_GETFL);
    if (flags < 0 || ::fcntl(file.Descriptor(), F_SETFL, flags & ~O_NONBLOCK) < 0)
        file.Close();
    return file;
}

std::string InputErrorText(int error)
{
    return error == ENXIO ? "it is a pipe that nothing writes to" : std::generic_category().message(error);
}

}  // namespace tesk
