// Files that come through a pipe.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/files/file.h"

namespace tesk {

/// What an open pipe gives, copied into a file without a name: it goes with the object, however the tool ends.
class CPipeCopy {
public:
    /// @param most  bytes that the copy may have
    /// @throw CRefusal if there are more, or they cannot be read or written
    CPipeCopy(const CFile &pipe, std::uintmax_t most);
    CPipeCopy(const CPipeCopy &) = delete;
    CPipeCopy &operator=(const CPipeCopy &) = delete;

    /// Where this process, and those that it starts, can open the copy.
    const std::string &Path() const { return m_path; }

private:
    void Fill(const CFile &pipe, std::uintmax_t most);

    CFile m_file;
    std::string m_path;
};

/// The path from which an input can be read. Of a pipe that holds anything but a VCD, which is read as it comes, it is that
/// of a copy, which lives as long as the tool and takes at most 16 GiB of its temporary folder.
/// @param path  "-" is standard input
/// @throw CRefusal if a pipe cannot be read or copied
std::string ReadablePath(const std::string &path);

}  // namespace tesk
