// What is in a MAT-file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct MATFile;

namespace tesk {

/// A variable, or a field of a structure.
struct SMatListed {
    std::string name;       ///< as a formula takes it: "v", "run.out", of an array of structures "run(1).out"
    std::string className;  ///< MATLAB's word, with "sparse" or "complex" in front
    std::vector<std::uint64_t> sizes;
};

/// Whether a file is a MAT-file, by how it begins. Those of version 4 have no mark: their first words and name are looked at.
/// @param beginning  of a file, 64 bytes or all of it
bool BeginsAsMatFile(std::string_view beginning);

/// Names for a message: the first ones, in quotes.
std::string FirstNames(const std::vector<SMatListed> &list);

/// As the next one, of an open file. @return nullopt if it cannot be read
std::optional<std::vector<SMatListed>> ListMatVariables(MATFile *file);

/// Lists the variables in the order of the file, behind each structure its fields; of an array of structures those of the
/// first element. The file is read in a process of its own.
/// @throw CRefusal if it cannot be read
std::vector<SMatListed> ListMatFile(const std::string &path);

}  // namespace tesk
