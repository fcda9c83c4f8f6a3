#include "platform/matlab/systemreads.h"

#include <sys/syscall.h>
#include <unistd.h>

// None of them calls the function that it is named after, which is the program's own (watchedreads.cpp).

ssize_t SystemReadItems(void *to, std::size_t size, std::size_t count, std::FILE *file)
{
    const std::size_t items = fread_unlocked(to, size, count, file);
    return items < count && std::ferror(file) != 0 ? -1 : static_cast<ssize_t>(items);
}

ssize_t SystemRead(int file, void *to, std::size_t size)
{
    return syscall(SYS_read, file, to, size);
}

ssize_t SystemReadAt(int file, void *to, std::size_t size, off_t position)
{
    return syscall(SYS_pread64, file, to, size, position);
}
