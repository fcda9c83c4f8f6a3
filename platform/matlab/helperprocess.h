// A process that is started for one answer and does not outlive it.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

/// Runs a program and reads what it writes to standard output. The program gets that pipe and nothing else: standard
/// input and error are the null device, and no other descriptor of the host is passed on. It is killed, and waited for,
/// when the object goes.
class CHelperProcess {
public:
    /// Starts it. If that fails, nothing can be read.
    /// @param command  a path and the arguments
    /// @param time     how long it may take for everything that is read
    /// @param bytes    how much may be read in all
    CHelperProcess(const std::vector<std::string> &command, std::chrono::milliseconds time, std::size_t bytes);
    CHelperProcess(const CHelperProcess &) = delete;
    CHelperProcess &operator=(const CHelperProcess &) = delete;
    ~CHelperProcess();

    /// Reads exactly `size` bytes.
    /// @return false if they do not come in time, or are more than may be read; then nothing more can be
    bool Read(void *buffer, std::size_t size);
    /// What went wrong with the program itself, as words behind its name such as "was ended by signal 9 (Killed)"; empty if it
    /// ended by itself, or said what was not agreed. To be asked once a read has failed.
    std::string Fault();
    /// How much may still be read.
    std::size_t GetRemaining() const { return m_remaining; }

private:
    bool Start(const std::vector<std::string> &command);
    bool WaitForOutput();
    std::size_t ReadSome(void *buffer, std::size_t size);
    bool Fail();

    std::string FaultOfEnd();

    pid_t m_process = -1;
    int m_startError = 0;   // an errno
    bool m_isLate = false;  // nothing came in time
    std::chrono::milliseconds m_time;
    int m_output = -1;
    std::chrono::steady_clock::time_point m_deadline;
    std::size_t m_remaining;
    std::vector<char> m_buffer;
    std::size_t m_at = 0;  // of what is in the buffer and was not handed out
};
