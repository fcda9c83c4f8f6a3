// Kinds of files that are not read, told by how they begin or end in their names.
#pragma once

#include <string>
#include <string_view>

namespace tesk {

/// A kind of file that somebody may take for one that is read.
struct SForeignKind {
    std::string_view name;       ///< "a GHW file"
    std::string_view beginning;  ///< of a file; blanks in front of it and letter case do not count
    std::string_view extension;  ///< of a file's name, where its bytes tell nothing; else empty
    std::string_view advice;     ///< what would do
};

/// @param bytes     the beginning of a file
/// @return null if it is none of them. Static
const SForeignKind *FindForeignKind(std::string_view bytes, std::string_view fileName);

/// "it is a GHW file, which is not read; ..."
std::string ForeignKindText(const SForeignKind &kind);

}  // namespace tesk
