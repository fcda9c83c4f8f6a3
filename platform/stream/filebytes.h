// The bytes of an event-stream file.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "platform/files/file.h"

namespace Morvel {

/// What is wrong with a file; the text does not name it.
class XFault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Tells whether two openings met the same contents.
using CFileStamp = std::array<std::int64_t, 7>;

/// An open file, read wherever its index tells.
class CFileBytes {
public:
    /// @throw XFault if there is no regular file, or it cannot be opened
    static std::shared_ptr<CFileBytes> Open(const std::filesystem::path &path);
    /// What is packed in `path`, in a file that nobody else sees and that goes with the object.
    /// @throw XFault if it cannot be unpacked, or grows beyond all proportion
    static std::shared_ptr<CFileBytes> Unpack(const std::filesystem::path &path);

    explicit CFileBytes(tesk::CFile file) : m_file(std::move(file)) {}
    CFileBytes(const CFileBytes &) = delete;
    CFileBytes &operator=(const CFileBytes &) = delete;

    std::uint64_t Size() const;
    /// Place, size and times of the file.
    CFileStamp Stamp() const;
    /// Whether it begins as what gzip packed.
    bool IsPacked() const;
    /// @throw XFault if there are not so many
    std::string Read(std::uint64_t offset, std::uint64_t size) const;

private:
    tesk::CFile m_file;
};

}  // namespace Morvel
