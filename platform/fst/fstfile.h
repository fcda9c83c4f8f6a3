// The bytes of an FST file, read where they are asked for.
#pragma once

#include <cstdint>
#include <string>

#include "platform/files/regularfile.h"
#include "platform/fst/fstbytes.h"

namespace NTARN {

class CFstFile {
public:
    /// Opens a file.
    /// @throw XFileDoesNotExist, or XFileCorrupted if it is no regular file or must not be read
    explicit CFstFile(const std::string &path);
    /// Unpacks a file that its writer packed as a whole into a temporary one, which takes its place.
    /// @throw XFileCorrupted, XFstNoRoom; XFstTooMuch if it claims to be longer than one that packs so small
    void Unwrap();

    std::uint64_t Size() const { return m_size; }
    /// As it lies on the disk, packed as a whole or not.
    std::uint64_t PackedSize() const { return m_packedSize; }
    /// @throw XFstDamage if the file does not have all of these bytes, XByteFault if the system cannot read them
    CFstBuffer Read(std::uint64_t position, std::uint64_t size);
    /// Why the system could not read on, as an `errno`; 0 if it always could.
    int Error() const { return m_error; }

private:
    tesk::CFile m_file;
    std::uint64_t m_size = 0;
    std::uint64_t m_packedSize = 0;
    int m_error = 0;
};

/// Raised where a file that is packed as a whole cannot be unpacked, for want of room for temporary files.
struct XFstNoRoom {
    int error;  ///< an `errno`
};

/// The bytes of a file beside a waveform file; empty if there is none.
CFstBuffer ReadFstSidecar(const std::string &path);

}  // namespace NTARN
