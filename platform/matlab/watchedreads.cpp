// matio and HDF5 take a read that fails for the end of the file, or what they looked for as missing. A library that calls one of these
// functions by name finds the program's own in front of the C library's; here the first read that fails ends the program.
#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "platform/matlab/matput.h"
#include "platform/matlab/matstream.h"
#include "platform/matlab/systemreads.h"

#define TESK_IN_PLACE_OF(name) __asm__(name) __attribute__((visibility("default"), used))

extern "C" {

std::size_t WatchedReadItems(void *to, std::size_t size, std::size_t count, std::FILE *file) TESK_IN_PLACE_OF("fread");
std::size_t WatchedReadItemsInto(void *to, std::size_t room, std::size_t size, std::size_t count, std::FILE *file)
    TESK_IN_PLACE_OF("__fread_chk");
ssize_t WatchedRead(int file, void *to, std::size_t size) TESK_IN_PLACE_OF("read");
ssize_t WatchedReadAt(int file, void *to, std::size_t size, off_t position) TESK_IN_PLACE_OF("pread");
ssize_t WatchedReadAt64(int file, void *to, std::size_t size, off_t position) TESK_IN_PLACE_OF("pread64");

}  // extern "C"

namespace {

ssize_t Watched(ssize_t count)
{
    if (count < 0)
        Leave(ReadFailed + errno);
    return count;
}

}  // namespace

std::size_t WatchedReadItems(void *to, std::size_t size, std::size_t count, std::FILE *file)
{
    return static_cast<std::size_t>(Watched(SystemReadItems(to, size, count, file)));
}

// What the compiler makes of the former where it knows how much room there is.
std::size_t WatchedReadItemsInto(void *to, std::size_t room, std::size_t size, std::size_t count, std::FILE *file)
{
    if (size != 0 && count > room / size)
        std::abort();
    return WatchedReadItems(to, size, count, file);
}

ssize_t WatchedRead(int file, void *to, std::size_t size)
{
    return Watched(SystemRead(file, to, size));
}

ssize_t WatchedReadAt(int file, void *to, std::size_t size, off_t position)
{
    return Watched(SystemReadAt(file, to, size, position));
}

ssize_t WatchedReadAt64(int file, void *to, std::size_t size, off_t position)
{
    return Watched(SystemReadAt(file, to, size, position));
}
