// Opening waveform files for reading.
#pragma once

#include <cstdint>
#include <string>

#include "platform/files/file.h"
#include "platform/tarn.h"

namespace NTARN {

/// Raised where a file is there and of the right form, as far as can be told, but the system cannot read it.
class XFileUnreadable : public XFileCorrupted {
public:
    /// @param error  an `errno`
    explicit XFileUnreadable(int error);

    /// "Waveform file `a.fst' cannot be read: Input/output error."
    std::string TextFor(const std::string &path) const;
    /// "cannot be read: Input/output error"
    const char *what() const noexcept override { return m_text.c_str(); }

private:
    std::string m_text;
};

/// Tells in the log that a file which is open cannot be read on. @param error  an `errno`
void TellUnreadable(const std::string &path, int error);

/// Opens a file for reading. Only regular ones are taken: the opening of a pipe would wait.
/// @return one that is open. @throw XFileDoesNotExist, or XFileCorrupted if it is no regular file or must not be read
tesk::CFile OpenRegularFile(const std::string &path);

/// Bytes of an open file. @throw XFileUnreadable
std::uint64_t SizeOfFile(const tesk::CFile &file);

}  // namespace NTARN
