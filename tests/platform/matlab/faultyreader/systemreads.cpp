// The reads of a reader whose Nth fails; TESK_TEST_FAILING_READ tells which.
#include "platform/matlab/systemreads.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace {

bool Fails()
{
    static const int failing = std::atoi(std::getenv("TESK_TEST_FAILING_READ"));
    static int number = 0;
    errno = EIO;
    return ++number == failing;
}

}  // namespace

ssize_t SystemReadItems(void *to, std::size_t size, std::size_t count, std::FILE *file)
{
    return Fails() ? -1 : static_cast<ssize_t>(fread_unlocked(to, size, count, file));
}

ssize_t SystemRead(int file, void *to, std::size_t size)
{
    return Fails() ? -1 : syscall(SYS_read, file, to, size);
}

ssize_t SystemReadAt(int file, void *to, std::size_t size, off_t position)
{
    return Fails() ? -1 : syscall(SYS_pread64, file, to, size, position);
}
