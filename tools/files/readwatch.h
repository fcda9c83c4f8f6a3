// What the system could not read.
#pragma once

#include <cstddef>
#include <map>
#include <mutex>
#include <string>

#include "platform/files/filecalls.h"

namespace tesk {

/// Notes, while it lives, the first file that the system cannot open or read on, whoever wanted it and whatever he made of
/// that: what a command then says of its input, or makes of it, is not to be relied on. That a file is not there or must not be
/// read is no such fault; those who want it tell that.
class CReadWatch final : public CFileCalls {
public:
    /// Stands in front of the calls in use. At most one at a time.
    CReadWatch();
    CReadWatch(const CReadWatch &) = delete;
    CReadWatch &operator=(const CReadWatch &) = delete;
    ~CReadWatch();

    /// "waves.fst: cannot be read: Input/output error"; empty as long as nothing went wrong, or is watched.
    static std::string Fault();
    /// @throw CRefusal with the fault, if there is one
    static void Check();

    int Open(int folder, const char *path, int flags, mode_t rights) override;
    int Close(int file) override;
    ssize_t Read(int file, void *to, std::size_t size) override;
    ssize_t ReadAt(int file, void *to, std::size_t size, off_t position) override;
    ssize_t Write(int file, const void *from, std::size_t size) override;
    off_t Seek(int file, off_t offset, int origin) override;
    int Status(int file, struct stat &status) override;
    int Rename(int folder, const char *from, const char *to) override;
    int Remove(int folder, const char *name) override;

private:
    void Note(const std::string &path);
    void NoteRead(int file);

    CFileCalls &m_calls;
    CReadWatch *m_outer;
    std::mutex m_mutex;  // of all below
    std::map<int, std::string> m_paths;
    std::string m_fault;
};

}  // namespace tesk
