// Names that a formula takes out of files without waveforms: columns of text tables, variables of MAT-files.
#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace tesk {

struct SListedName {
    std::string name;
    std::string className;             ///< of a variable
    std::vector<std::uint64_t> sizes;  ///< of a variable
};

struct SNameList {
    const char *noun;  ///< "column" or "variable"
    std::vector<SListedName> names;
};

/// Lists what a file holds, if it is a text table by its name (.txt, .csv, .tsv) and no other kind by its contents, or a MAT-file by its
/// contents or, where they tell nothing, by its name (.mat).
/// @return nullopt if it is neither
/// @throw CRefusal if it cannot be read
std::optional<SNameList> ListNames(const std::string &path);

/// Takes some of the names. @param globs  as those of `SSelection`; all names if there are none
/// @throw CRefusal for a glob that no name is like
SNameList Select(const SNameList &list, const std::string &path, const std::vector<std::string> &globs);

/// @param format  "table", "csv" or "json"
void WriteNames(std::ostream &out, const SNameList &list, const std::string &path, const std::string &format);

}  // namespace tesk
