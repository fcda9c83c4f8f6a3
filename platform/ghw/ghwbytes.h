// Reading the bytes of a GHW file in order, through a window.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/files/regularfile.h"

namespace NTARN {

/// Raised where bytes do not say what the format asks for. It stays inside the reader.
struct XGhwDamage {};
/// Raised where the file ends too early.
struct XGhwCut : XGhwDamage {};
/// Raised where the system cannot read the file.
struct XGhwReadFault : XGhwDamage {
    int error;  ///< an `errno`
};

/// Takes values off the file from one position on. Each operation raises XGhwCut if its value does not end inside, and
/// XGhwReadFault if it cannot be read.
class CGhwBytes {
public:
    /// Opens a file, and stands at its beginning.
    /// @throw XFileDoesNotExist, XFileCorrupted
    explicit CGhwBytes(const std::string &path);

    /// How words, times and reals are written from now on.
    void SetBigEndian(bool isBigEndian) { m_isBigEndian = isBigEndian; }
    void Seek(std::uint64_t position);
    std::uint64_t Position() const { return m_windowEnd - (m_window.size() - m_next); }
    std::uint64_t Size() const { return m_size; }
    /// Bytes up to the end of the file.
    std::uint64_t Left() const { return m_size - Position(); }
    /// Why the system could not read on, as an `errno`; 0 if it always could.
    int Error() const { return m_error; }

    std::uint8_t Byte()
    {
        if (m_next == m_window.size())
            Fill();
        return m_window[m_next++];
    }

    /// 4 bytes.
    std::uint32_t Word() { return static_cast<std::uint32_t>(Fixed(4)); }
    /// 8 bytes: a time, or the bits of a real.
    std::uint64_t Long() { return Fixed(8); }
    /// Groups of 7 bits, at most 32 bits altogether: a count, or the number of a string, a type or an element.
    std::uint32_t Number();
    /// As many groups, in two's complement.
    std::int64_t Signed();
    /// A count of things each of which takes a byte or more. @throw XGhwDamage if the file has no room for them
    std::uint32_t Count();

private:
    std::uint64_t Fixed(unsigned size);
    void Fill();

    tesk::CFile m_file;
    std::uint64_t m_size;
    std::vector<std::uint8_t> m_window;
    std::size_t m_next = 0;         // in the window
    std::uint64_t m_windowEnd = 0;  // in the file
    bool m_isBigEndian = false;
    int m_error = 0;
};

}  // namespace NTARN
