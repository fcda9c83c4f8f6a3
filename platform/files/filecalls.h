// The system's calls on files, in the one place where a test can have them fail.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>

namespace tesk {

/// The calls through which every file is opened, read, written, moved and removed. Each is the system call that it names,
/// `errno` included. `CFile` uses them, and files are used through that one.
///
/// A test derives from it and has some of the calls fail. There is no destructor: the system's own calls are there as long as
/// the process, for what still writes when it ends.
class CFileCalls {
public:
    /// openat(2).
    virtual int Open(int folder, const char *path, int flags, mode_t rights);
    /// close(2).
    virtual int Close(int file);
    /// read(2).
    virtual ssize_t Read(int file, void *to, std::size_t size);
    /// pread(2).
    virtual ssize_t ReadAt(int file, void *to, std::size_t size, off_t position);
    /// write(2).
    virtual ssize_t Write(int file, const void *from, std::size_t size);
    /// lseek(2).
    virtual off_t Seek(int file, off_t offset, int origin);
    /// fstat(2).
    virtual int Status(int file, struct stat &status);
    /// renameat(2), within a folder.
    virtual int Rename(int folder, const char *from, const char *to);
    /// unlinkat(2), of a file.
    virtual int Remove(int folder, const char *name);
};

/// Those in use. May be called in a handler of a signal.
CFileCalls &FileCalls();

/// Replaces them, for all threads. @param calls  outlives its use; null for the system's. @return those before
CFileCalls *SetFileCalls(CFileCalls *calls);

}  // namespace tesk
