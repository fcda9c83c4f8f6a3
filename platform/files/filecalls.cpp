#include "platform/files/filecalls.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>

namespace tesk {

namespace {

constinit CFileCalls g_systemCalls;
constinit std::atomic<CFileCalls *> g_fileCalls = &g_systemCalls;

}  // namespace

int CFileCalls::Open(int folder, const char *path, int flags, mode_t rights)
{
    return ::openat(folder, path, flags, rights);
}

int CFileCalls::Close(int file)
{
    return ::close(file);
}

ssize_t CFileCalls::Read(int file, void *to, std::size_t size)
{
    return ::read(file, to, size);
}

ssize_t CFileCalls::ReadAt(int file, void *to, std::size_t size, off_t position)
{
    return ::pread(file, to, size, position);
}

ssize_t CFileCalls::Write(int file, const void *from, std::size_t size)
{
    return ::write(file, from, size);
}

off_t CFileCalls::Seek(int file, off_t offset, int origin)
{
    return ::lseek(file, offset, origin);
}

int CFileCalls::Status(int file, struct stat &status)
{
    return ::fstat(file, &status);
}

int CFileCalls::Rename(int folder, const char *from, const char *to)
{
    return ::renameat(folder, from, folder, to);
}

int CFileCalls::Remove(int folder, const char *name)
{
    return ::unlinkat(folder, name, 0);
}

CFileCalls &FileCalls()
{
    return *g_fileCalls.load(std::memory_order_acquire);
}

CFileCalls *SetFileCalls(CFileCalls *calls)
{
    return g_fileCalls.exchange(calls != nullptr ? calls : &g_systemCalls);
}

}  // namespace tesk
