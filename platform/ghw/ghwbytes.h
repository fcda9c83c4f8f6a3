// Reading the bytes of a GHW file in order, through a window.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/files/bytereader.h"
#include "platform/files/regularfile.h"

namespace NTARN {

/// Raised where bytes do not say what the format asks for. It stays inside the reader.
using XGhwDamage = tesk::XByteDamage;
/// Raised where the file ends too early.
using XGhwCut = tesk::XByteCut;

/// A file, of which a part is in memory.
class CGhwWindow {
public:
    /// @throw XFileDoesNotExist, XFileCorrupted
    explicit CGhwWindow(const std::string &path);

    /// Reads the part behind this one. @throw XGhwCut at the end of the file, XByteFault if it cannot be read
    std::span<const std::uint8_t> More();
    void Seek(std::uint64_t position) { m_end = position; }

    /// Of the file.
    std::uint64_t Size() const { return m_size; }
    /// Where the part ends in the file.
    std::uint64_t End() const { return m_end; }
    int Error() const { return m_error; }

private:
    tesk::CFile m_file;
    std::uint64_t m_size;
    std::uint64_t m_end = 0;
    std::vector<std::uint8_t> m_part;
    int m_error = 0;
};

/// Takes values off the file from one position on.
class CGhwBytes : private tesk::TByteReader<CGhwWindow> {
public:
    /// Opens a file, and stands at its beginning.
    /// @throw XFileDoesNotExist, XFileCorrupted
    explicit CGhwBytes(const std::string &path) : TByteReader(CGhwWindow(path)) {}

    /// How words, times and reals are written from now on.
    void SetBigEndian(bool isBigEndian) { m_isBigEndian = isBigEndian; }
    void Seek(std::uint64_t position);
    std::uint64_t Position() const { return Source().End() - Rest().size(); }
    std::uint64_t Size() const { return Source().Size(); }
    /// Bytes up to the end of the file.
    std::uint64_t Left() const { return Size() - Position(); }
    /// Why the system could not read on, as an `errno`; 0 if it always could.
    int Error() const { return Source().Error(); }

    using TByteReader::Byte;
    /// 4 bytes.
    std::uint32_t Word() { return m_isBigEndian ? Big<std::uint32_t>() : Little<std::uint32_t>(); }
    /// 8 bytes: a time, or the bits of a real.
    std::uint64_t Long() { return m_isBigEndian ? Big<std::uint64_t>() : Little<std::uint64_t>(); }
    /// Groups of 7 bits, at most 32 bits altogether: a count, or the number of a string, a type or an element.
    std::uint32_t Number();
    /// As many groups, in two's complement.
    std::int64_t Signed() { return SignedVarint(); }
    /// A count of things each of which takes a byte or more. @throw XGhwDamage if the file has no room for them
    std::uint32_t Count();

private:
    bool m_isBigEndian = false;
};

}  // namespace NTARN
