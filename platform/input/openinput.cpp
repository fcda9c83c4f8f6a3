#include "platform/input/openinput.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace tesk {

namespace {

constexpr int PatienceMs = 500;  // who starts reader and writer together starts one of them first

class CDescriptor {
public:
    explicit CDescriptor(int number) : m_number(number) {}
    CDescriptor(const CDescriptor &) = delete;
    CDescriptor &operator=(const CDescriptor &) = delete;
    ~CDescriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }

    int Number() const { return m_number; }
    int Release()
    {
        const int number = m_number;
        m_number = -1;
        return number;
    }

private:
    int m_number;
};

bool IsPipe(int descriptor)
{
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && S_ISFIFO(status.st_mode);
}

// Whether data, or the end of those that came, can be read from a pipe, now or later.
bool HasWriter(int descriptor)
{
    pollfd wanted{descriptor, POLLIN, 0};
    if (::poll(&wanted, 1, PatienceMs) != 0)
        return true;
    // Nothing came. To copy a byte out of a pipe takes none away, and finds an end only where there is no writer.
    int copy[2];
    if (::pipe2(copy, O_CLOEXEC) != 0)
        return true;
    const CDescriptor readEnd(copy[0]);
    const CDescriptor writeEnd(copy[1]);
    return ::tee(descriptor, writeEnd.Number(), 1, SPLICE_F_NONBLOCK) != 0;
}

}  // namespace

int OpenInput(const char *fileName)
{
    CDescriptor file(::open(fileName, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (file.Number() < 0)
        return -1;
    if (IsPipe(file.Number()) && !HasWriter(file.Number())) {
        errno = ENXIO;
        return -1;
    }
    const int flags = ::fcntl(file.Number(), F_GETFL);
    if (flags < 0 || ::fcntl(file.Number(), F_SETFL, flags & ~O_NONBLOCK) < 0)
        return -1;
    return file.Release();
}

std::string InputErrorText(int error)
{
    return error == ENXIO ? "it is a pipe that nothing writes to" : std::generic_category().message(error);
}

InputStream OpenInputStream(const char *fileName)
{
    CDescriptor file(OpenInput(fileName));
    InputStream stream(file.Number() >= 0 ? ::fdopen(file.Number(), "rb") : nullptr);
    if (stream != nullptr)
        file.Release();
    return stream;
}

}  // namespace tesk
