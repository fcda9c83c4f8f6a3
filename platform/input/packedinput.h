// The bytes of a file, unpacked where they are gzip's.
#pragma once

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/files/file.h"

namespace tesk {

/// What is wrong with an input; the text does not name it.
class XInputFault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What is packed is damaged, cut off, or grows beyond all proportion. What was read before is good.
class XUnpackFault : public XInputFault {
public:
    using XInputFault::XInputFault;
};

/// Reads a file or a pipe from the front to the back. What begins as gzip (RFC 1952) is unpacked on the way, all of its
/// members; the name of the file says nothing.
class CPackedInput {
public:
    /// @throw XInputFault if the file cannot be opened
    explicit CPackedInput(const std::string &fileName);
    CPackedInput(const CPackedInput &) = delete;
    CPackedInput &operator=(const CPackedInput &) = delete;
    ~CPackedInput();

    /// @return bytes read, 0 at the end
    /// @throw XInputFault if the file cannot be read, XUnpackFault if it cannot be unpacked any further
    std::size_t Read(char *to, std::size_t room);

    /// Whether it is packed; known behind the first read.
    bool IsPacked() const { return m_unpacker != nullptr; }
    /// Bytes of the file; 0 where they are not known, as of a pipe.
    long long FileSize() const { return m_fileSize; }
    /// Bytes read of the file, packed as they are.
    long long BytesRead() const { return m_bytesRead; }

    /// What a file may unpack to: a base, and so much for each byte. What is not made to hurt stays far below.
    static constexpr long long UnpackedBase = 1LL << 25;
    static constexpr long long UnpackedPerByte = 128;

private:
    struct SUnpacker;

    std::size_t ReadFile(char *to, std::size_t room);
    bool Fill();
    void Recognise();
    std::size_t Unpack(char *to, std::size_t room);
    bool StartMember();
    std::size_t Inflate(char *to, std::size_t room);
    std::size_t HandOver(char *to, std::size_t room);

    CFile m_file;
    long long m_fileSize = 0;
    long long m_bytesRead = 0;
    long long m_unpacked = 0;
    bool m_isRecognised = false;
    std::vector<char> m_buffer;  // what is read of the file and not taken yet, if it is packed
    std::size_t m_next = 0;
    std::size_t m_count = 0;
    std::unique_ptr<SUnpacker> m_unpacker;  // null if nothing is packed
};

}  // namespace tesk
