#include "platform/matlab/helperprocess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/matlab/matstream.h"

namespace {

constexpr std::size_t BufferSize = 65536;
constexpr int FirstOtherDescriptor = 3;

// The descriptors of the new process: the pipe first, since its end may have the number of one of the others.
class CDescriptors {
public:
    explicit CDescriptors(int output)
    {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_adddup2(&m_actions, output, STDOUT_FILENO);
        posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&m_actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addclosefrom_np(&m_actions, FirstOtherDescriptor);
    }
    CDescriptors(const CDescriptors &) = delete;
    CDescriptors &operator=(const CDescriptors &) = delete;
    ~CDescriptors() { posix_spawn_file_actions_destroy(&m_actions); }

    const posix_spawn_file_actions_t *Get() const { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions;
};

// The signals of the new process: none blocked, none ignored, whatever the host does with its own.
class CSignals {
public:
    CSignals()
    {
        posix_spawnattr_init(&m_attributes);
        sigset_t set;
        sigemptyset(&set);
        posix_spawnattr_setsigmask(&m_attributes, &set);
        sigfillset(&set);
        posix_spawnattr_setsigdefault(&m_attributes, &set);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    CSignals(const CSignals &) = delete;
    CSignals &operator=(const CSignals &) = delete;
    ~CSignals() { posix_spawnattr_destroy(&m_attributes); }

    const posix_spawnattr_t *Get() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes;
};

}  // namespace

CHelperProcess::CHelperProcess(const std::vector<std::string> &command, std::chrono::milliseconds time,
                               std::size_t bytes)
    : m_time(time), m_deadline(std::chrono::steady_clock::now() + time), m_remaining(bytes)
{
    if (!Start(command))
        Fail();
}

CHelperProcess::~CHelperProcess()
{
    if (m_output != -1)
        close(m_output);
    // A host that ignores SIGCHLD, or waits for any child, may have taken it already; then its id is nobody's to kill.
    if (m_process == -1 || waitpid(m_process, nullptr, WNOHANG) != 0)
        return;
    kill(m_process, SIGKILL);
    while (waitpid(m_process, nullptr, 0) == -1 && errno == EINTR)
        ;
}

bool CHelperProcess::Start(const std::vector<std::string> &command)
{
    std::vector<char *> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string &argument : command)
        arguments.push_back(const_cast<char *>(argument.c_str()));
    arguments.push_back(nullptr);
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        m_startError = errno;
        return false;
    }
    m_output = ends[0];
    const CDescriptors descriptors(ends[1]);
    const CSignals signals;
    const int error =
        posix_spawn(&m_process, arguments.front(), descriptors.Get(), signals.Get(), arguments.data(), environ);
    close(ends[1]);
    if (error != 0)
        m_process = -1;
    m_startError = error;
    return error == 0;
}

bool CHelperProcess::Read(void *buffer, std::size_t size)
{
    if (size > m_remaining)
        return Fail();
    m_remaining -= size;
    char *to = static_cast<char *>(buffer);
    while (size > 0) {
        const std::size_t count = ReadSome(to, size);
        if (count == 0)
            return Fail();
        to += count;
        size -= count;
    }
    return true;
}

// @return the number of bytes, at most `size`; 0 for none
std::size_t CHelperProcess::ReadSome(void *buffer, std::size_t size)
{
    if (m_at == m_buffer.size()) {
        m_at = 0;
        m_buffer.resize(BufferSize);
        ssize_t count = -1;
        while (WaitForOutput() && (count = read(m_output, m_buffer.data(), BufferSize)) == -1 && errno == EINTR)
            ;
        m_buffer.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    const std::size_t count = std::min(size, m_buffer.size() - m_at);
    std::memcpy(buffer, m_buffer.data() + m_at, count);
    m_at += count;
    return count;
}

// @return false if nothing comes in time; true also at the end of the output
bool CHelperProcess::WaitForOutput()
{
    while (true) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_deadline - std::chrono::steady_clock::now());
        pollfd output = {m_output, POLLIN, 0};
        const int ready = left.count() > 0 ? poll(&output, 1, static_cast<int>(left.count())) : 0;
        if (ready == -1 && errno == EINTR)
            continue;
        m_isLate = ready == 0;
        return ready == 1;
    }
}

bool CHelperProcess::Fail()
{
    m_remaining = 0;
    return false;
}

std::string CHelperProcess::Fault()
{
    if (m_startError != 0)
        return std::string("cannot be started: ") + std::strerror(m_startError);
    if (m_isLate)
        return "did not answer within " + std::to_string(std::chrono::ceil<std::chrono::seconds>(m_time).count()) +
               " s";
    return FaultOfEnd();
}

// The program has closed its output and is about to end, or goes on for reasons of its own.
std::string CHelperProcess::FaultOfEnd()
{
    constexpr int MostWaits = 100;
    int status = 0;
    pid_t ended = 0;
    for (int i = 0; m_process != -1 && i < MostWaits && ended == 0; ++i) {
        ended = waitpid(m_process, &status, WNOHANG);
        if (ended == 0)
            usleep(1000);
    }
    if (ended <= 0)
        return {};
    m_process = -1;
    if (WIFEXITED(status) && WEXITSTATUS(status) > ReadFailed)
        return std::string("could not read the file: ") + std::strerror(WEXITSTATUS(status) - ReadFailed);
    if (!WIFSIGNALED(status))
        return {};
    const int number = WTERMSIG(status);
    return "was ended by signal " + std::to_string(number) + " (" + strsignal(number) + ")";
}
