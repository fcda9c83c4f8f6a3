// Writing to a file through a stream.
#pragma once

#include <ios>
#include <streambuf>
#include <utility>
#include <vector>

#include "platform/files/file.h"

namespace tesk {

/// The buffer of a stream that writes to a file, and keeps what went wrong first.
class CFileBuffer final : public std::streambuf {
public:
    explicit CFileBuffer(CFile file = {});
    CFileBuffer(const CFileBuffer &) = delete;
    CFileBuffer &operator=(const CFileBuffer &) = delete;

    /// Goes on with another file.
    void Attach(CFile file) { m_file = std::move(file); }
    /// As an `errno`; 0 if nothing did.
    int Error() const { return m_error; }
    /// Closes the file. What is in the buffer is lost.
    void Close() { Keep(m_file.Close()); }

protected:
    int_type overflow(int_type byte) override;
    int sync() override;
    pos_type seekoff(off_type offset, std::ios_base::seekdir from, std::ios_base::openmode mode) override;
    pos_type seekpos(pos_type position, std::ios_base::openmode mode) override;

private:
    void Empty() { setp(m_bytes.data(), m_bytes.data() + m_bytes.size()); }
    void Keep(int error) { m_error = m_error != 0 ? m_error : error; }

    CFile m_file;
    int m_error = 0;
    std::vector<char> m_bytes;
};

}  // namespace tesk
