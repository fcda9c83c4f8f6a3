// The system's calls on files, failing where a test wants them to.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <limits>
#include <string>

#include "platform/files/filecalls.h"

/// Kinds of calls, as a set of bits.
enum EFileCalls : unsigned {
    OpenCalls = 1,
    CloseCalls = 2,
    ReadCalls = 4,
    WriteCalls = 8,
    SeekCalls = 16,
    StatusCalls = 32,
    RenameCalls = 64,
    RemoveCalls = 128,
    ReadingCalls = OpenCalls | ReadCalls | SeekCalls | StatusCalls,
    WritingCalls = OpenCalls | CloseCalls | WriteCalls | SeekCalls | RenameCalls,
};

/// While it lives, all files are used through it. It counts the calls of some kinds, and has them fail.
class CFaultyFiles final : public tesk::CFileCalls {
public:
    static constexpr std::size_t Never = std::numeric_limits<std::size_t>::max();

    /// @param calls  those that are counted
    /// @param error  of those that fail, an `errno`
    /// @param first  of those that fail, from 1
    /// @param last   of them
    explicit CFaultyFiles(unsigned calls, int error = 0, std::size_t first = Never, std::size_t last = Never)
        : m_calls(calls), m_error(error), m_first(first), m_last(last), m_before(tesk::SetFileCalls(this))
    {}
    CFaultyFiles(const CFaultyFiles &) = delete;
    CFaultyFiles &operator=(const CFaultyFiles &) = delete;
    ~CFaultyFiles() { tesk::SetFileCalls(m_before); }

    /// Lets each call move so many bytes at most.
    void LimitPieces(std::size_t size) { m_piece = size; }
    /// Interrupts every second call that may be.
    void Interrupt() { m_isInterrupting = true; }

    /// Calls that were counted.
    std::size_t Count() const { return m_count; }
    /// Calls that failed.
    std::size_t FailedCount() const { return m_failedCount; }

    int Open(int folder, const char *path, int flags, mode_t rights) override
    {
        return Fails(OpenCalls) ? -1 : CFileCalls::Open(folder, path, flags, rights);
    }
    // Which is closed all the same, as Linux does it.
    int Close(int file) override
    {
        const bool fails = Fails(CloseCalls);
        const int error = errno;
        const int result = CFileCalls::Close(file);
        errno = fails ? error : errno;
        return fails ? -1 : result;
    }
    ssize_t Read(int file, void *to, std::size_t size) override
    {
        return Fails(ReadCalls) ? -1 : CFileCalls::Read(file, to, std::min(size, m_piece));
    }
    ssize_t ReadAt(int file, void *to, std::size_t size, off_t position) override
    {
        return Fails(ReadCalls) ? -1 : CFileCalls::ReadAt(file, to, std::min(size, m_piece), position);
    }
    ssize_t Write(int file, const void *from, std::size_t size) override
    {
        return Fails(WriteCalls) ? -1 : CFileCalls::Write(file, from, std::min(size, m_piece));
    }
    off_t Seek(int file, off_t offset, int origin) override
    {
        return Fails(SeekCalls) ? -1 : CFileCalls::Seek(file, offset, origin);
    }
    int Status(int file, struct stat &status) override
    {
        return Fails(StatusCalls) ? -1 : CFileCalls::Status(file, status);
    }
    int Rename(int folder, const char *from, const char *to) override
    {
        return Fails(RenameCalls) ? -1 : CFileCalls::Rename(folder, from, to);
    }
    int Remove(int folder, const char *name) override
    {
        return Fails(RemoveCalls) ? -1 : CFileCalls::Remove(folder, name);
    }

private:
    bool Fails(EFileCalls call)
    {
        constexpr unsigned Interruptible = OpenCalls | CloseCalls | ReadCalls | WriteCalls;
        if (m_isInterrupting && (call & Interruptible) != 0 && (++m_interruptions & 1) != 0) {
            errno = EINTR;
            return true;
        }
        if ((m_calls & call) == 0)
            return false;
        const std::size_t number = ++m_count;
        if (number < m_first || number > m_last)
            return false;
        ++m_failedCount;
        errno = m_error;
        return true;
    }

    unsigned m_calls;
    int m_error;
    std::size_t m_first;
    std::size_t m_last;
    std::size_t m_piece = Never;
    bool m_isInterrupting = false;
    std::atomic<std::size_t> m_count = 0;
    std::atomic<std::size_t> m_failedCount = 0;
    std::atomic<std::size_t> m_interruptions = 0;
    tesk::CFileCalls *m_before;
};

/// Descriptors that this process has open.
inline std::size_t OpenDescriptors()
{
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

/// All calls from 1 to `count`, or some of them where they are many.
template <class TTry>
void ForEachCall(std::size_t count, TTry tryCall)
{
    constexpr std::size_t All = 60, Spread = 60;
    for (std::size_t call = 1; call <= count; call += call < All ? 1 : std::max<std::size_t>((count - All) / Spread, 1))
        tryCall(call);
}
