#include "tools/files/readwatch.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <utility>

#include "tools/commandline.h"
#include "tools/quote.h"

namespace tesk {

namespace {

CReadWatch *g_watch = nullptr;

// Of an opening: these tell of the system and not of the path.
constexpr int SystemErrors[] = {EIO, EMFILE, ENFILE, ENOMEM, ESTALE, ETIMEDOUT};

bool IsForReading(int flags)
{
    return (flags & O_ACCMODE) == O_RDONLY && (flags & O_PATH) == 0;
}

}  // namespace

CReadWatch::CReadWatch() : m_calls(FileCalls()), m_outer(std::exchange(g_watch, this))
{
    SetFileCalls(this);
}

CReadWatch::~CReadWatch()
{
    SetFileCalls(&m_calls);
    g_watch = m_outer;
}

std::string CReadWatch::Fault()
{
    if (g_watch == nullptr)
        return {};
    const std::lock_guard lock(g_watch->m_mutex);
    return g_watch->m_fault;
}

void CReadWatch::Check()
{
    if (const std::string fault = Fault(); !fault.empty())
        throw CRefusal(fault);
}

// To be called with the lock held.
void CReadWatch::Note(const std::string &path)
{
    if (m_fault.empty())
        m_fault = OneLine(path) + ": cannot be read: " + std::strerror(errno);
}

void CReadWatch::NoteRead(int file)
{
    if (errno == EINTR || errno == EAGAIN || errno == EISDIR)
        return;
    const int error = errno;
    const std::lock_guard lock(m_mutex);
    const auto path = m_paths.find(file);
    errno = error;
    Note(path != m_paths.end() ? path->second : "standard input");
    errno = error;
}

int CReadWatch::Open(int folder, const char *path, int flags, mode_t rights)
{
    const int file = m_calls.Open(folder, path, flags, rights);
    if (!IsForReading(flags))
        return file;
    const int error = errno;
    const std::lock_guard lock(m_mutex);
    if (file >= 0)
        m_paths[file] = path;
    else if (std::ranges::find(SystemErrors, error) != std::end(SystemErrors))
        Note(path);
    errno = error;
    return file;
}

int CReadWatch::Close(int file)
{
    {
        const std::lock_guard lock(m_mutex);
        m_paths.erase(file);
    }
    return m_calls.Close(file);
}

ssize_t CReadWatch::Read(int file, void *to, std::size_t size)
{
    const ssize_t count = m_calls.Read(file, to, size);
    if (count < 0)
        NoteRead(file);
    return count;
}

ssize_t CReadWatch::ReadAt(int file, void *to, std::size_t size, off_t position)
{
    const ssize_t count = m_calls.ReadAt(file, to, size, position);
    if (count < 0)
        NoteRead(file);
    return count;
}

ssize_t CReadWatch::Write(int file, const void *from, std::size_t size)
{
    return m_calls.Write(file, from, size);
}

off_t CReadWatch::Seek(int file, off_t offset, int origin)
{
    return m_calls.Seek(file, offset, origin);
}

int CReadWatch::Status(int file, struct stat &status)
{
    const int result = m_calls.Status(file, status);
    if (result != 0)
        NoteRead(file);
    return result;
}

int CReadWatch::Rename(int folder, const char *from, const char *to)
{
    return m_calls.Rename(folder, from, to);
}

int CReadWatch::Remove(int folder, const char *name)
{
    return m_calls.Remove(folder, name);
}

}  // namespace tesk
