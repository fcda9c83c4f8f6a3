// An open file.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace tesk {

/// Owns a descriptor. What a signal interrupts is done again, and what the system does in pieces is done to its end. Each
/// failure leaves its `errno`.
class CFile {
public:
    CFile() = default;
    /// Takes a descriptor over; -1 for none.
    explicit CFile(int descriptor) : m_descriptor(descriptor) {}
    CFile(CFile &&other) noexcept : m_descriptor(other.Release()) {}
    CFile &operator=(CFile &&other) noexcept;
    ~CFile() { Close(); }

    /// Opens a file, which no process that this one starts inherits.
    /// @param flags   of open(2)
    /// @param rights  of a file that is made
    /// @param folder  where a relative path begins
    /// @return one that is not open on failure
    static CFile Open(const std::string &path, int flags = O_RDONLY, mode_t rights = 0666, int folder = AT_FDCWD);

    bool IsOpen() const { return m_descriptor >= 0; }
    int Descriptor() const { return m_descriptor; }
    /// Gives the descriptor up to the caller.
    int Release();
    /// @return 0, or what went wrong as an `errno`: then something written may be lost. It is closed all the same
    int Close();

    /// Reads what there is, at least a byte, and waits for it. @return bytes read, 0 at the end; -1 on failure
    ssize_t Read(void *to, std::size_t size) const;
    /// Reads until there is no more room. @return bytes read, fewer only at the end; -1 on failure
    ssize_t ReadFully(void *to, std::size_t size) const;
    /// As `ReadFully`, from a position on.
    ssize_t ReadAt(std::uint64_t position, void *to, std::size_t size) const;
    /// @return false on failure: some of it may be written
    bool Write(const void *from, std::size_t size) const;
    /// As lseek(2).
    off_t Seek(off_t offset, int origin) const;
    /// As fstat(2). @return false on failure
    bool Status(struct stat &status) const;

private:
    int m_descriptor = -1;
};

/// Reads the beginning of a file.
/// @param most   bytes that are read of it
/// @param bytes  receives them, and what was read before a failure
/// @return 0, or what went wrong as an `errno`
int ReadBeginning(const std::string &path, std::size_t most, std::string &bytes);
/// The same of what is read on in an open file.
int ReadBeginning(const CFile &file, std::size_t most, std::string &bytes);

}  // namespace tesk
