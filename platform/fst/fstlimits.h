// What an FST file may claim: a base, and so much for each of its bytes.
#pragma once

#include <algorithm>
#include <cstdint>

#include "platform/fst/fstbytes.h"

namespace NTARN {

/// Raised where a file claims more than one of its size can have. It stays inside the reader.
struct XFstTooMuch : XFstDamage {
    const char *what;  ///< "names"
};

/// A few packed bytes can stand for gigabytes. All that a file claims has a bound here.
struct SFstLimits {
    /// @param size  of the file as it lies on the disk, and of what lies beside it
    explicit SFstLimits(std::uint64_t size) : m_size(std::min(size, std::uint64_t{1} << 48)) {}

    std::uint64_t Entries() const { return (1 << 19) + 2 * m_size; }     ///< scopes and variables
    std::uint64_t Elements() const { return (1 << 22) + 8 * m_size; }    ///< of all variables
    std::uint64_t NameBytes() const { return (1 << 24) + 64 * m_size; }  ///< in the paths of all variables
    std::uint64_t Wrapped() const { return (1 << 24) + 64 * m_size; }    ///< of a file that is packed as a whole
    /// Bytes of a hierarchy, and of a frame.
    std::uint64_t Unpacked() const { return std::min<std::uint64_t>((1 << 24) + 32 * m_size, UINT32_MAX); }
    std::uint64_t Times() const { return (5 << 21) + 8 * m_size; }          ///< of all blocks
    std::uint64_t Events() const { return (5 << 21) + 8 * m_size; }         ///< of all elements that are asked for
    std::uint64_t StoreBytes() const { return (1 << 25) + 64 * m_size; }    ///< of the changes of one store
    std::uint64_t ChangeBytes() const { return (1 << 28) + 256 * m_size; }  ///< of all changes that are read

private:
    std::uint64_t m_size;
};

}  // namespace NTARN
